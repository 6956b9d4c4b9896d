// "zelvane restore": reopens the conversations of a snapshot, each in a new tab.
#pragma once

#include "cli/exit_code.h"

namespace zelvane::cli {

struct RestoreOptions {
  bool exact = false;   ///< just what the snapshot lists
  bool dryRun = false;  ///< opens nothing and writes nothing
};

/// Says what it will open, opens it, and says how that went. Interrupted, the next run opens the
/// rest.
ExitCode restore(const RestoreOptions& options);

}  // namespace zelvane::cli
