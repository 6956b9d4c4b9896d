// What the subcommands list, as a value, and the store that it comes from. Main thread.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "core/json_file.h"
#include "core/serial_queue.h"
#include "core/time.h"

#include "app/model/records/session.h"
#include "app/model/store/store.h"

namespace zelvane::cli {

enum class Format { text, json };

struct Listing {
  Time at;           ///< when the rows were seen so
  std::string home;  ///< the user's home folder
  std::vector<ZelvaneSession> sessions{};
  std::vector<Json> pendingRestore{};
  std::vector<Json> recentClosed{};
};

/// Whether nothing but the time differs.
bool sameContent(const Listing& a, const Listing& b);

/// A store of this user's machine, with the saved settings of the column, that writes nothing.
std::shared_ptr<ZelvaneStore> readOnlyStore(Executor mainThread);

/// What the store publishes now.
Listing listingOf(const ZelvaneStore& store, Time now);

/// What one pass over this user's machine finds now. Writes nothing.
Listing currentListing();

}  // namespace zelvane::cli
