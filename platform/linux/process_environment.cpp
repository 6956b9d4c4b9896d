#include "platform/process_environment.h"

#include <array>
#include <cerrno>
#include <dirent.h>
#include <fcntl.h>
#include <fstream>
#include <set>
#include <sstream>
#include <unistd.h>

namespace zelvane::platform {
namespace {

constexpr std::size_t largestEnvironment = std::size_t{4} << 20;

std::string procPath(std::int32_t pid, const char* file) {
  return "/proc/" + std::to_string(pid) + "/" + file;
}

/// The inodes of the sockets that the process has open.
std::set<std::string> socketInodes(std::int32_t pid) {
  std::set<std::string> inodes;
  const std::string path = procPath(pid, "fd");
  DIR* folder = opendir(path.c_str());
  if (!folder) return inodes;
  constexpr std::string_view start = "socket:[";
  std::array<char, 64> buffer;
  while (const dirent* entry = readdir(folder)) {
    const ssize_t length = readlinkat(dirfd(folder), entry->d_name, buffer.data(), buffer.size());
    if (length <= 0) continue;
    const std::string_view target(buffer.data(), static_cast<std::size_t>(length));
    if (!target.starts_with(start) || !target.ends_with(']')) continue;
    inodes.emplace(target.substr(start.size(), target.size() - start.size() - 1));
  }
  closedir(folder);
  return inodes;
}

}  // namespace

std::string processEnvironment(std::int32_t pid) {
  std::string bytes;
  if (pid < 1) return bytes;
  const int fd = open(procPath(pid, "environ").c_str(), O_RDONLY | O_CLOEXEC);
  if (fd < 0) return bytes;
  std::array<char, 16384> buffer;
  while (bytes.size() < largestEnvironment) {
    const ssize_t count = read(fd, buffer.data(), buffer.size());
    if (count < 0 && errno == EINTR) continue;
    if (count <= 0) break;
    bytes.append(buffer.data(), static_cast<std::size_t>(count));
  }
  close(fd);
  return bytes;
}

std::vector<std::string> listeningSockets(std::int32_t pid) {
  std::vector<std::string> paths;
  const auto inodes = socketInodes(pid);
  if (inodes.empty()) return paths;
  std::ifstream table(procPath(pid, "net/unix"));
  for (std::string line; std::getline(table, line);) {
    std::istringstream fields(line);
    std::string number, references, protocol, flags, type, state, inode;
    fields >> number >> references >> protocol >> flags >> type >> state >> inode;
    constexpr const char* accepting = "00010000";
    constexpr const char* stream = "0001";
    if (!fields || flags != accepting || type != stream || !inodes.contains(inode)) continue;
    std::string path;
    std::getline(fields >> std::ws, path);
    if (path.starts_with('/')) paths.push_back(path);
  }
  return paths;
}

}  // namespace zelvane::platform
