#include "platform/posix/local_stream.h"

#include <fcntl.h>
#include <sys/socket.h>
#include <unistd.h>

namespace zelvane::platform {

int openLocalStream() {
  const int fd = socket(AF_UNIX, SOCK_STREAM, 0);
  if (fd < 0) return fd;
  // Between the two calls a child could inherit it; ours are started without any descriptor.
  const int on = 1;
  const bool ready = fcntl(fd, F_SETFD, FD_CLOEXEC) == 0 && fcntl(fd, F_SETFL, O_NONBLOCK) == 0 &&
                     setsockopt(fd, SOL_SOCKET, SO_NOSIGPIPE, &on, sizeof on) == 0;
  if (ready) return fd;
  close(fd);
  return -1;
}

ssize_t sendQuietly(int fd, const void* bytes, std::size_t size) {
  return send(fd, bytes, size, 0);
}

}  // namespace zelvane::platform
