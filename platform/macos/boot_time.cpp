#include "platform/boot_time.h"

#include <array>
#include <sys/sysctl.h>
#include <sys/time.h>

namespace zelvane::platform {

std::int64_t bootTime() {
  std::array<int, 2> name{CTL_KERN, KERN_BOOTTIME};
  timeval booted{};
  std::size_t size = sizeof booted;
  if (sysctl(name.data(), name.size(), &booted, &size, nullptr, 0) != 0) return 0;
  return size == sizeof booted ? booted.tv_sec : 0;
}

}  // namespace zelvane::platform
