#include "core/file_lock.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

namespace zelvane::FileLock {

std::optional<std::int32_t> acquire(const std::string& path, Wait wait) {
  const int fd = open(path.c_str(), O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC, 0644);
  if (fd < 0) return std::nullopt;
  const int operation = LOCK_EX | (wait == Wait::no ? LOCK_NB : 0);
  int result = 0;
  while ((result = flock(fd, operation)) != 0 && errno == EINTR) {
  }
  if (result != 0) {
    close(fd);
    return std::nullopt;
  }
  return fd;
}

void release(std::int32_t fd) {
  // Unlocking first also frees the lock when a child that is just starting still has the file open.
  flock(fd, LOCK_UN);
  close(fd);
}

}  // namespace zelvane::FileLock
