#include "platform/boot_time.h"

#include <fstream>
#include <string>

namespace zelvane::platform {

std::int64_t bootTime() {
  std::ifstream stat("/proc/stat");
  std::string key;
  while (stat >> key) {
    std::int64_t seconds = 0;
    if (key == "btime" && stat >> seconds) return seconds;
    std::getline(stat, key);
  }
  return 0;
}

}  // namespace zelvane::platform
