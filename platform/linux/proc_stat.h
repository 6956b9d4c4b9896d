// Parsing of /proc/PID/stat, apart from reading it.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace zelvane::platform {

struct ProcStat {
  std::string name;
  char state = '?';
  std::int32_t parent = 0;
  std::int32_t ttyNumber = 0;  ///< device number of the controlling terminal, 0 for none
};

/// Reads one line of /proc/PID/stat; nothing when it is cut short or not of that form.
std::optional<ProcStat> parseProcStat(std::string_view line);

/// The device path behind a terminal's device number; nothing for 0 and for unknown drivers.
std::optional<std::string> ttyPath(std::int32_t ttyNumber);

}  // namespace zelvane::platform
