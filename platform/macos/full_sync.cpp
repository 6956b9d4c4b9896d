#include "platform/posix/full_sync.h"

#include <cerrno>
#include <fcntl.h>
#include <unistd.h>

namespace zelvane::platform {

int fullSync(int fd) {
  // fsync hands the bytes to the drive only; this request also empties the drive's own memory. Not
  // every file system knows it.
  const int result = fcntl(fd, F_FULLFSYNC);
  return result == 0 || errno == EINTR ? result : fsync(fd);
}

}  // namespace zelvane::platform
