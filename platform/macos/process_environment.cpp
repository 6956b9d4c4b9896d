#include "platform/process_environment.h"

#include <cstring>
#include <libproc.h>
#include <sys/socket.h>
#include <sys/un.h>

#include "platform/macos/argument_area.h"
#include "platform/macos/process_arguments.h"

namespace zelvane::platform {
namespace {

std::vector<proc_fdinfo> descriptorsOf(std::int32_t pid) {
  const int size = proc_pidinfo(pid, PROC_PIDLISTFDS, 0, nullptr, 0);
  if (size <= 0) return {};
  std::vector<proc_fdinfo> list(static_cast<std::size_t>(size) / sizeof(proc_fdinfo) + 16);
  const int taken = proc_pidinfo(pid, PROC_PIDLISTFDS, 0, list.data(),
                                 static_cast<int>(list.size() * sizeof(proc_fdinfo)));
  list.resize(taken > 0 ? static_cast<std::size_t>(taken) / sizeof(proc_fdinfo) : 0);
  return list;
}

/// The path that the descriptor listens on; empty when it is no local stream socket that does.
std::string listeningPath(std::int32_t pid, std::int32_t fd) {
  socket_fdinfo info{};
  constexpr int size = sizeof info;
  if (proc_pidfdinfo(pid, fd, PROC_PIDFDSOCKETINFO, &info, size) != size) return {};
  const auto& socket = info.psi;
  const bool listens = (socket.soi_options & SO_ACCEPTCONN) != 0;
  if (socket.soi_kind != SOCKINFO_UN || socket.soi_type != SOCK_STREAM || !listens) return {};
  const auto& path = socket.soi_proto.pri_un.unsi_addr.ua_sun.sun_path;
  return std::string(path, strnlen(path, sizeof path));
}

}  // namespace

std::string processEnvironment(std::int32_t pid) {
  const auto bytes = argumentArea(pid);
  const auto area = parseArgumentArea(bytes);
  return area ? std::string(area->environment) : std::string();
}

std::vector<std::string> listeningSockets(std::int32_t pid) {
  std::vector<std::string> paths;
  if (pid < 1) return paths;
  for (const auto& descriptor : descriptorsOf(pid)) {
    if (descriptor.proc_fdtype != PROX_FDTYPE_SOCKET) continue;
    auto path = listeningPath(pid, descriptor.proc_fd);
    if (path.starts_with('/')) paths.push_back(std::move(path));
  }
  return paths;
}

}  // namespace zelvane::platform
