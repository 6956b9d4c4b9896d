#include "platform/posix/local_stream.h"

#include <sys/socket.h>

namespace zelvane::platform {

int openLocalStream() { return socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0); }

ssize_t sendQuietly(int fd, const void* bytes, std::size_t size) {
  return send(fd, bytes, size, MSG_NOSIGNAL);
}

}  // namespace zelvane::platform
