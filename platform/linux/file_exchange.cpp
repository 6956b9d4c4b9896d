#include "platform/file_exchange.h"

#include <cerrno>
#include <cstdio>
#include <fcntl.h>

namespace zelvane::platform {

std::error_code exchangeFiles(const std::string& a, const std::string& b) {
  if (renameat2(AT_FDCWD, a.c_str(), AT_FDCWD, b.c_str(), RENAME_EXCHANGE) == 0) return {};
  if (errno == EINVAL || errno == ENOSYS) return std::make_error_code(std::errc::not_supported);
  return {errno, std::generic_category()};
}

}  // namespace zelvane::platform
