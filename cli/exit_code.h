// What the command tells its caller when it ends.
#pragma once

namespace zelvane::cli {

enum ExitCode : int {
  fine = 0,
  failed = 1,
  wrongUsage = 2,
};

}  // namespace zelvane::cli
