#include "platform/file_sync.h"

#include <cerrno>
#include <fcntl.h>
#include <unistd.h>

namespace zelvane::platform {

std::error_code syncFile(int fd) {
  // fsync hands the bytes to the drive only; this request also empties the drive's own cache.
  if (fcntl(fd, F_FULLFSYNC) == 0) return {};
  int result = 0;
  while ((result = fsync(fd)) != 0 && errno == EINTR) {
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
