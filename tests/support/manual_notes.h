// A notes store that does nothing on its own while a test runs.
#pragma once

#include "app/notes/notes_store.h"
#include "tests/support/temporary_folder.h"

namespace zelvane::test {

/// Saves and retries only when told to.
inline NotesStore::Options manual(const TemporaryFolder& folder) {
  return {.dir = folder.path(), .saveDelay = Seconds(1e6), .retryDelay = Seconds(1e6)};
}

}  // namespace zelvane::test
