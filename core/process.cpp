#include "core/process.h"

#include <cerrno>
#include <csignal>

#include "platform/boot_time.h"
#include "platform/process_table.h"

#include "core/unicode.h"

namespace zelvane {
namespace Proc {
namespace {

constexpr const char* claude = "claude";

bool isExactlyClaude(std::int32_t pid, const Info& info) {
  return lowerCased(info.comm) == claude || lowerCased(invokedName(pid).value_or("")) == claude;
}

}  // namespace

std::optional<Info> info(std::int32_t pid) {
  const auto process = platform::processInfo(pid);
  if (!process) return std::nullopt;
  return Info{process->parent, repairedUtf8(process->name), process->tty};
}

std::optional<std::string> invokedName(std::int32_t pid) {
  const auto argument = platform::firstArgument(pid);
  if (!argument) return std::nullopt;
  return repairedUtf8(argument->substr(argument->rfind('/') + 1));
}

bool isClaude(std::int32_t pid, const Info& info) {
  const auto namesClaude = [](const std::string& name) {
    return lowerCased(name).find(claude) != std::string::npos;
  };
  return namesClaude(info.comm) || namesClaude(invokedName(pid).value_or(""));
}

bool alive(std::int32_t pid) { return pid >= 1 && (kill(pid, 0) == 0 || errno == EPERM); }

std::map<std::int32_t, std::string> claudeTTYs() {
  std::map<std::int32_t, std::string> ttys;
  for (const auto pid : platform::processIds()) {
    const auto process = info(pid);
    if (process && process->tty && isExactlyClaude(pid, *process)) ttys[pid] = *process->tty;
  }
  return ttys;
}

double bootTime() { return static_cast<double>(platform::bootTime()); }

}  // namespace Proc

namespace Procs {

std::optional<std::string> tty(std::int32_t pid) {
  const auto process = platform::processInfo(pid);
  return process ? process->tty : std::nullopt;
}

Time bootTime() { return timeAt(Proc::bootTime()); }

}  // namespace Procs
}  // namespace zelvane
