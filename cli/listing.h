// What the subcommands list, as a value, and the store that it comes from. Main thread.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "core/json_file.h"
#include "core/serial_queue.h"
#include "core/time.h"

#include "app/model/records/session.h"
#include "app/model/store/store.h"

namespace zelvane::cli {

enum class Format { text, json };
enum class WithNotes { no, yes };

struct Listing {
  Time at;           ///< when the rows were seen so
  std::string home;  ///< the user's home folder
  std::vector<ZelvaneSession> sessions{};
  std::vector<Json> pendingRestore{};
  std::vector<Json> recentClosed{};
  std::optional<std::string> notesProblem{};  ///< what the user must know about his notes
};

/// Whether nothing but the time differs.
bool sameContent(const Listing& a, const Listing& b);

/// A store of this user's machine, with the saved settings of the column, that writes nothing.
std::shared_ptr<ZelvaneStore> readOnlyStore(Executor mainThread, WithNotes notes = WithNotes::yes);

/// What the store publishes now.
Listing listingOf(const ZelvaneStore& store, Time now);

/// What one pass over this user's machine finds now. Writes nothing. Without notes, which may be
/// large, the rows have neither memos nor titles of the user's own.
Listing currentListing(WithNotes notes = WithNotes::yes);

}  // namespace zelvane::cli
