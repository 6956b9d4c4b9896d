#include "platform/file_exchange.h"

#include <cerrno>
#include <cstdio>

namespace zelvane::platform {

namespace {

std::error_code renamed(const std::string& a, const std::string& b, unsigned int flags) {
  if (renamex_np(a.c_str(), b.c_str(), flags) == 0) return {};
  // Disks that know no such thing say the one or the other.
  if (errno == ENOTSUP || errno == EINVAL) return std::make_error_code(std::errc::not_supported);
  return {errno, std::generic_category()};
}

}  // namespace

std::error_code exchangeFiles(const std::string& a, const std::string& b) {
  return renamed(a, b, RENAME_SWAP);
}

std::error_code moveToFreeName(const std::string& file, const std::string& name) {
  return renamed(file, name, RENAME_EXCL);
}

}  // namespace zelvane::platform
