// The kernel's process table. Stateless; any thread.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace zelvane::platform {

struct ProcessInfo {
  std::int32_t parent = 0;
  std::string name;                ///< the kernel's short command name, at most 16 bytes, as stored
  std::optional<std::string> tty;  ///< controlling terminal as "/dev/…", absent when it has none
};

/// What the kernel tells of a living process; nothing for a pid below 1, an unknown process, or one
/// that has ended and only waits for its parent.
std::optional<ProcessInfo> processInfo(std::int32_t pid);

/// The process's first argument (argv[0]) as it was started; nothing when empty or not readable.
std::optional<std::string> firstArgument(std::int32_t pid);

/// The first 4 KiB of the words that the process was started with, a word that is cut left out;
/// empty when not readable.
std::vector<std::string> arguments(std::int32_t pid);

/// All process ids of the moment, in no promised order.
std::vector<std::int32_t> processIds();

}  // namespace zelvane::platform
