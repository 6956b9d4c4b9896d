#include "platform/file_exchange.h"

#include <cerrno>
#include <cstdio>

namespace zelvane::platform {

std::error_code exchangeFiles(const std::string& a, const std::string& b) {
  if (renamex_np(a.c_str(), b.c_str(), RENAME_SWAP) == 0) return {};
  // Disks that know no exchange say the one or the other.
  if (errno == ENOTSUP || errno == EINVAL) return std::make_error_code(std::errc::not_supported);
  return {errno, std::generic_category()};
}

}  // namespace zelvane::platform
