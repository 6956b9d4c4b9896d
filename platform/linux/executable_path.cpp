#include "platform/executable_path.h"

#include <filesystem>
#include <system_error>

namespace zelvane::platform {

std::string executablePath() {
  std::error_code failed;
  return std::filesystem::read_symlink("/proc/self/exe", failed).string();
}

}  // namespace zelvane::platform
