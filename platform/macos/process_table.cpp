#include "platform/process_table.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <libproc.h>
#include <string_view>
#include <sys/stat.h>
#include <sys/sysctl.h>

#include "platform/macos/argument_area.h"
#include "platform/macos/process_arguments.h"

namespace zelvane::platform {
namespace {

/// The device's name in /dev; nothing when there is none, or the system makes one up.
std::optional<std::string> ttyPath(std::uint32_t device) {
  if (device == 0 || device == UINT32_MAX) return std::nullopt;
  std::array<char, 128> buffer{};
  const char* name = devname_r(static_cast<dev_t>(device), S_IFCHR, buffer.data(),
                               static_cast<int>(buffer.size()));
  if (!name || !*name || *name == '#' || *name == '?') return std::nullopt;
  return "/dev/" + std::string(name);
}

template <std::size_t size>
std::string nameIn(const char (&field)[size]) {
  return std::string(field, strnlen(field, std::min<std::size_t>(size, MAXCOMLEN)));
}

/// What everybody may know of any process. The login program between a terminal and its shell is
/// the superuser's, and a walk to the terminal must get past it.
std::optional<ProcessInfo> anyUsersProcess(std::int32_t pid) {
  std::array<int, 4> name{CTL_KERN, KERN_PROC, KERN_PROC_PID, pid};
  kinfo_proc process{};
  std::size_t size = sizeof process;
  if (sysctl(name.data(), name.size(), &process, &size, nullptr, 0) != 0) return std::nullopt;
  // An unknown process is no error: nothing is written.
  if (size != sizeof process || process.kp_proc.p_pid != pid) return std::nullopt;
  if (process.kp_proc.p_stat == SZOMB) return std::nullopt;
  return ProcessInfo{process.kp_eproc.e_ppid, nameIn(process.kp_proc.p_comm),
                     ttyPath(static_cast<std::uint32_t>(process.kp_eproc.e_tdev))};
}

}  // namespace

std::optional<ProcessInfo> processInfo(std::int32_t pid) {
  if (pid < 1) return std::nullopt;
  proc_bsdinfo info{};
  constexpr int size = sizeof info;
  if (proc_pidinfo(pid, PROC_PIDTBSDINFO, 0, &info, size) != size) return anyUsersProcess(pid);
  if (info.pbi_status == SZOMB) return std::nullopt;
  return ProcessInfo{static_cast<std::int32_t>(info.pbi_ppid), nameIn(info.pbi_comm),
                     ttyPath(info.e_tdev)};
}

std::string argumentArea(std::int32_t pid) {
  if (pid < 1) return {};
  std::array<int, 3> name{CTL_KERN, KERN_PROCARGS2, pid};
  std::size_t size = 0;
  if (sysctl(name.data(), name.size(), nullptr, &size, nullptr, 0) != 0 || size < 5) return {};
  // Of an area that is larger than the room the kernel hands out the end, whose front is none. So
  // when the room is full the process has started another program meanwhile.
  constexpr std::size_t spare = 256;
  std::string area(size + spare, '\0');
  size = area.size();
  if (sysctl(name.data(), name.size(), area.data(), &size, nullptr, 0) != 0) return {};
  if (size >= area.size()) return {};
  area.resize(size);
  return area;
}

std::optional<std::string> firstArgument(std::int32_t pid) {
  const auto bytes = argumentArea(pid);
  const auto area = parseArgumentArea(bytes);
  return area ? std::optional(std::string(area->arguments.front())) : std::nullopt;
}

std::vector<std::string> arguments(std::int32_t pid) {
  constexpr std::size_t most = 4096;
  const auto bytes = argumentArea(pid);
  const auto area = parseArgumentArea(bytes);
  std::vector<std::string> words;
  std::size_t used = 0;
  for (const auto word : area ? area->arguments : std::vector<std::string_view>()) {
    used += word.size() + 1;
    if (used > most) break;
    words.emplace_back(word);
  }
  return words;
}

std::vector<std::int32_t> processIds() {
  const int count = proc_listallpids(nullptr, 0);
  if (count < 1) return {};
  // Some may be started between the two calls.
  std::vector<std::int32_t> ids(static_cast<std::size_t>(count) + 64);
  const int listed =
      proc_listallpids(ids.data(), static_cast<int>(ids.size() * sizeof(std::int32_t)));
  ids.resize(std::min(static_cast<std::size_t>(std::max(listed, 0)), ids.size()));
  std::erase_if(ids, [](std::int32_t pid) { return pid < 1; });
  return ids;
}

}  // namespace zelvane::platform
