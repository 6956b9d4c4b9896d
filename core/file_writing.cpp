#include "core/file_writing.h"

#include <cerrno>
#include <poll.h>
#include <unistd.h>

namespace zelvane {

bool writeAll(int fd, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t count = write(fd, bytes.data(), bytes.size());
    if (count > 0) {
      bytes.remove_prefix(static_cast<std::size_t>(count));
    } else if (count < 0 && errno == EAGAIN) {
      // Programs that share a terminal may have made it non-blocking.
      pollfd waits{fd, POLLOUT, 0};
      poll(&waits, 1, -1);
    } else if (count == 0 || errno != EINTR) {
      return false;
    }
  }
  return true;
}

}  // namespace zelvane
