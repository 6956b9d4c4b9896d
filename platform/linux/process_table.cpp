#include "platform/process_table.h"

#include <array>
#include <charconv>
#include <cstdio>
#include <dirent.h>
#include <fcntl.h>
#include <fstream>
#include <unistd.h>

#include "platform/linux/proc_stat.h"

namespace zelvane::platform {

std::optional<ProcStat> parseProcStat(std::string_view line) {
  // The name may itself hold blanks and parentheses ("tmux: server"): it ends at the last ')'.
  const auto open = line.find('(');
  const auto close = line.rfind(')');
  if (open == line.npos || close == line.npos || close < open) return std::nullopt;
  ProcStat stat;
  stat.name = line.substr(open + 1, close - open - 1);
  int group = 0;
  int session = 0;
  const std::string rest(line.substr(close + 1));
  if (std::sscanf(rest.c_str(), " %c %d %d %d %d", &stat.state, &stat.parent, &group, &session,
                  &stat.ttyNumber) != 5) {
    return std::nullopt;
  }
  return stat;
}

std::optional<std::string> ttyPath(std::int32_t ttyNumber) {
  const auto number = static_cast<std::uint32_t>(ttyNumber);
  const std::uint32_t major = (number >> 8) & 0xfff;
  const std::uint32_t minor = (number & 0xff) | ((number >> 12) & 0xfff00);
  if (major >= 136 && major <= 143) {
    return "/dev/pts/" + std::to_string((major - 136) * 256 + minor);
  }
  if (major == 0) return std::nullopt;
  // Consoles, serial lines and the like: the kernel knows what their device file is called.
  std::ifstream event("/sys/dev/char/" + std::to_string(major) + ":" + std::to_string(minor) +
                      "/uevent");
  for (std::string line; std::getline(event, line);) {
    if (line.starts_with("DEVNAME=")) return "/dev/" + line.substr(8);
  }
  if (major == 4 && minor < 64) return "/dev/tty" + std::to_string(minor);
  if (major == 4) return "/dev/ttyS" + std::to_string(minor - 64);
  return std::nullopt;
}

namespace {

/// The first bytes of a /proc file: what the callers need stands at the front.
std::string readProcFile(std::int32_t pid, const char* file) {
  const std::string path = "/proc/" + std::to_string(pid) + "/" + file;
  const int fd = open(path.c_str(), O_RDONLY | O_CLOEXEC);
  if (fd < 0) return {};
  std::array<char, 4096> buffer;
  const ssize_t count = read(fd, buffer.data(), buffer.size());
  close(fd);
  return count > 0 ? std::string(buffer.data(), static_cast<std::size_t>(count)) : std::string();
}

}  // namespace

std::optional<ProcessInfo> processInfo(std::int32_t pid) {
  if (pid < 1) return std::nullopt;
  auto stat = parseProcStat(readProcFile(pid, "stat"));
  if (!stat || stat->state == 'Z' || stat->state == 'X') return std::nullopt;
  return ProcessInfo{stat->parent, std::move(stat->name), ttyPath(stat->ttyNumber)};
}

std::optional<std::string> firstArgument(std::int32_t pid) {
  if (pid < 1) return std::nullopt;
  const std::string arguments = readProcFile(pid, "cmdline");
  const auto end = arguments.find('\0');
  if (end == arguments.npos || end == 0) return std::nullopt;
  return arguments.substr(0, end);
}

std::vector<std::string> arguments(std::int32_t pid) {
  std::vector<std::string> words;
  if (pid < 1) return words;
  const std::string bytes = readProcFile(pid, "cmdline");
  for (std::size_t begin = 0, end = 0; (end = bytes.find('\0', begin)) != bytes.npos;
       begin = end + 1) {
    words.push_back(bytes.substr(begin, end - begin));
  }
  return words;
}

std::vector<std::int32_t> processIds() {
  std::vector<std::int32_t> ids;
  DIR* folder = opendir("/proc");
  if (!folder) return ids;
  while (const dirent* entry = readdir(folder)) {
    const std::string_view name = entry->d_name;
    std::int32_t pid = 0;
    const auto [end, error] = std::from_chars(name.data(), name.data() + name.size(), pid);
    if (error == std::errc() && end == name.data() + name.size()) ids.push_back(pid);
  }
  closedir(folder);
  return ids;
}

}  // namespace zelvane::platform
