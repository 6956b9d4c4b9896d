#include "core/file_lock.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

namespace zelvane::FileLock {

namespace {

constexpr Seconds poll(0.01);

bool lock(int fd, Wait wait) {
  int result = 0;
  while ((result = flock(fd, LOCK_EX | (wait == Wait::no ? LOCK_NB : 0))) != 0 && errno == EINTR) {
  }
  return result == 0;
}

void closeKeepingErrno(int fd) {
  const int error = errno;
  close(fd);
  errno = error;
}

/// Never waits for the other end of a pipe that somebody put in the place.
int openLockFile(const std::string& path) {
  const int flags = O_WRONLY | O_APPEND | O_CREAT | O_NONBLOCK | O_CLOEXEC;
  const int fd = open(path.c_str(), flags, 0644);
  struct stat info {};
  if (fd < 0 || (fstat(fd, &info) == 0 && S_ISREG(info.st_mode))) return fd;
  close(fd);
  errno = ENXIO;  // as for a pipe without a reader
  return -1;
}

}  // namespace

std::optional<std::int32_t> acquire(const std::string& path, Wait wait) {
  const int fd = openLockFile(path);
  if (fd < 0) return std::nullopt;
  if (lock(fd, wait)) return fd;
  closeKeepingErrno(fd);
  return std::nullopt;
}

std::optional<std::int32_t> acquireWithin(const std::string& path, Seconds patience) {
  const int fd = openLockFile(path);
  if (fd < 0) return std::nullopt;
  for (Seconds waited(0);; waited += poll) {
    if (lock(fd, Wait::no)) return fd;
    if (errno != EWOULDBLOCK || waited >= patience) break;
    std::this_thread::sleep_for(poll);
  }
  closeKeepingErrno(fd);
  return std::nullopt;
}

void release(std::int32_t fd) {
  // Unlocking first also frees the lock when a child that is just starting still has the file open.
  flock(fd, LOCK_UN);
  close(fd);
}

}  // namespace zelvane::FileLock
