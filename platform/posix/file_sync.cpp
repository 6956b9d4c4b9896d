#include "platform/file_sync.h"

#include <cerrno>
#include <fcntl.h>
#include <unistd.h>

#include "platform/posix/full_sync.h"

namespace zelvane::platform {

std::error_code syncFile(int fd) {
  int result = 0;
  while ((result = fullSync(fd)) != 0 && errno == EINTR) {
  }
  const bool unknown = result != 0 && (errno == EINVAL || errno == ENOTSUP || errno == EROFS);
  if (result == 0 || unknown) return {};
  return {errno, std::generic_category()};
}

std::error_code syncFolder(const std::string& path) {
  const int fd = open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (fd < 0) return {errno, std::generic_category()};
  const auto failed = syncFile(fd);
  close(fd);
  return failed;
}

}  // namespace zelvane::platform
