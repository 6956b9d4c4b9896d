// What the kernel keeps of a process's start: its arguments and its environment. Pure.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace zelvane::platform {

/// What lies in the area that the kernel hands out whole: the number of arguments (4 bytes, the
/// machine's order), the program's path with zero bytes after it, the arguments, the variables;
/// each text ended by a zero byte. Behind an empty text come things of the system's own.
struct ArgumentArea {
  std::vector<std::string_view> arguments;  ///< the whole ones, argv[0] first
  std::string_view environment;             ///< "NAME=value" entries each ended by a zero byte
};

/// Finds them; nothing when there is no first argument or the area ends within it. The views are
/// into the area.
std::optional<ArgumentArea> parseArgumentArea(std::string_view area);

}  // namespace zelvane::platform
