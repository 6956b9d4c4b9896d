#include "platform/file_exchange.h"

#include <cerrno>
#include <cstdio>
#include <fcntl.h>

namespace zelvane::platform {

namespace {

std::error_code renamed(const std::string& a, const std::string& b, unsigned int flags) {
  if (renameat2(AT_FDCWD, a.c_str(), AT_FDCWD, b.c_str(), flags) == 0) return {};
  if (errno == EINVAL || errno == ENOSYS) return std::make_error_code(std::errc::not_supported);
  return {errno, std::generic_category()};
}

}  // namespace

std::error_code exchangeFiles(const std::string& a, const std::string& b) {
  return renamed(a, b, RENAME_EXCHANGE);
}

std::error_code moveToFreeName(const std::string& file, const std::string& name) {
  return renamed(file, name, RENAME_NOREPLACE);
}

}  // namespace zelvane::platform
