#include "platform/executable_path.h"

#include <array>
#include <libproc.h>
#include <unistd.h>

namespace zelvane::platform {

std::string executablePath() {
  // The kernel's answer follows a bundle that was moved since, and holds no links.
  std::array<char, PROC_PIDPATHINFO_MAXSIZE> path{};
  const int length = proc_pidpath(getpid(), path.data(), path.size());
  return length > 0 ? std::string(path.data(), static_cast<std::size_t>(length)) : std::string();
}

}  // namespace zelvane::platform
