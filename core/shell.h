// Runs external commands with a time-out. Any thread; blocks until the command has ended.
#pragma once

#include <atomic>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "core/time.h"

namespace zelvane::Shell {

struct Result {
  std::int32_t code = -1;  ///< exit status; -1 when the command could not be started
  std::string out;         ///< what it wrote to standard output, invalid UTF-8 repaired
};

/// Variables added to the inherited ones, each replacing one of the same name.
using Environment = std::map<std::string, std::string>;

/// Runs the program at a path. A command that outlives the time-out is asked to end; what it wrote
/// until then is returned.
Result run(const std::string& executable, const std::vector<std::string>& arguments,
           const std::optional<std::string>& cwd, Seconds timeout);

/// The same, for its output alone: empty when it could not be started. Once `cancelled` is true the
/// command is asked to end.
std::string run(const std::string& executable, const std::vector<std::string>& arguments,
                const Environment& env, Seconds timeout,
                const std::atomic<bool>* cancelled = nullptr);

}  // namespace zelvane::Shell
