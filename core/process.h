// Processes of the machine, as the system's rules see them. Stateless; any thread.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>

#include "core/time.h"

namespace zelvane {

/// The process table.
namespace Proc {

struct Info {
  std::int32_t ppid = 0;
  std::string comm;                ///< the kernel's short command name, invalid UTF-8 repaired
  std::optional<std::string> tty;  ///< controlling terminal, "/dev/…"
};

/// Nothing for a pid below 1 or a process that does not live.
std::optional<Info> info(std::int32_t pid);
/// Last path component of the process's argv[0]; nothing when it has none.
std::optional<std::string> invokedName(std::int32_t pid);
/// Whether its command name or else its invoked name contains "claude", in any case of letters.
bool isClaude(std::int32_t pid, const Info& info);
/// Whether the process exists, also when it is another user's.
bool alive(std::int32_t pid);
/// Every process with a terminal whose command name or invoked name is exactly "claude" (any case
/// of letters), with that terminal.
std::map<std::int32_t, std::string> claudeTTYs();
/// Boot time in whole seconds since 1970.
double bootTime();

}  // namespace Proc

/// The same table in the application's terms.
namespace Procs {

/// Controlling terminal of one process, "/dev/…".
std::optional<std::string> tty(std::int32_t pid);
Time bootTime();

}  // namespace Procs
}  // namespace zelvane
