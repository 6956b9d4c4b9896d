#include <array>
#include <csignal>
#include <fcntl.h>
#include <poll.h>
#include <sys/syscall.h>
#include <unistd.h>

#include "platform/posix/child_parts.h"

namespace zelvane::platform {

short keepDescriptorsOut(posix_spawn_file_actions_t& actions) {
  posix_spawn_file_actions_addclosefrom_np(&actions, 3);
  return 0;
}

bool openPipe(std::array<int, 2>& ends) { return pipe2(ends.data(), O_CLOEXEC) == 0; }

// The source is readable once the child has ended; close-on-exec by itself. Old kernels and some
// sandboxes have none.
ChildEvents::ChildEvents(pid_t pid, int output)
    : pid_(pid), output_(output), source_(static_cast<int>(syscall(SYS_pidfd_open, pid, 0))) {
  tells_ = source_.fd >= 0;
}

ChildNews ChildEvents::wait(std::chrono::milliseconds longest) {
  if (!tells_) return askChild(pid_, output_, longest);
  std::array<pollfd, 2> events{pollfd{source_.fd, POLLIN, 0}, pollfd{output_, POLLIN, 0}};
  poll(events.data(), events.size(), static_cast<int>(longest.count()));
  return {.output = events[1].revents != 0, .ended = events[0].revents != 0};
}

void ChildEvents::forgetOutput() { output_ = -1; }

void ChildEvents::signal(int number) const {
  if (tells_) {
    syscall(SYS_pidfd_send_signal, source_.fd, number, nullptr, 0);
  } else {
    signalUnlessEnded(pid_, number);
  }
}

}  // namespace zelvane::platform
