#include "platform/child_process.h"

#include <algorithm>
#include <array>
#include <csignal>
#include <fcntl.h>
#include <poll.h>
#include <sys/syscall.h>
#include <unistd.h>

#include "platform/posix/child_parts.h"

namespace zelvane::platform {
namespace {

/// Follows a running child until it has ended, asking it to end at the deadline.
class Supervision {
 public:
  Supervision(pid_t pid, int output, ChildClock::time_point deadline,
              const std::atomic<bool>* cancelled)
      : pid_(pid),
        output_(output),
        // Readable once the child has ended; close-on-exec by itself. Old kernels and some
        // sandboxes have none: then the child is asked about twenty times a second.
        ended_(static_cast<int>(syscall(SYS_pidfd_open, pid, 0))),
        deadline_(deadline),
        cancelled_(cancelled) {}

  void untilEnd(std::string& output) {
    bool open = true;
    while (true) {
      std::array<pollfd, 2> events{pollfd{ended_.fd, POLLIN, 0},
                                   pollfd{open ? output_ : -1, POLLIN, 0}};
      poll(events.data(), events.size(), millisecondsLeft());
      if (open && events[1].revents != 0) open = readSome(output_, output) != PipeState::ended;
      if (events[0].revents != 0 || (ended_.fd < 0 && hasEnded(pid_))) break;
      if (ChildClock::now() >= deadline_ || (!asked_ && isCancelled())) signalNext();
    }
    if (open) readRest(output_, output);
  }

 private:
  int millisecondsLeft() const {
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline_ - ChildClock::now());
    const std::int64_t most = ended_.fd < 0 ? 50 : cancelled_ ? 100 : 3'600'000;
    return static_cast<int>(std::clamp<std::int64_t>(left.count(), 0, most));
  }

  bool isCancelled() const { return cancelled_ && *cancelled_; }

  void signalNext() {
    const int signal = asked_ ? SIGKILL : SIGTERM;
    // Who ignores the end of children has none left to wait for, and the id may be another's soon.
    if (ended_.fd >= 0) {
      syscall(SYS_pidfd_send_signal, ended_.fd, signal, nullptr, 0);
    } else if (!hasEnded(pid_)) {
      kill(pid_, signal);
    }
    asked_ = true;
    deadline_ = ChildClock::now() + graceBeforeKill;
  }

  pid_t pid_;
  int output_;
  Descriptor ended_;
  ChildClock::time_point deadline_;
  const std::atomic<bool>* cancelled_;
  bool asked_ = false;
};

}  // namespace

short keepDescriptorsOut(posix_spawn_file_actions_t& actions) {
  posix_spawn_file_actions_addclosefrom_np(&actions, 3);
  return 0;
}

ChildResult runChild(const ChildRequest& request) {
  ChildResult result;
  std::array<int, 2> ends{-1, -1};
  if (pipe2(ends.data(), O_CLOEXEC) != 0) return result;
  Descriptor reading(ends[0]);
  Descriptor writing(ends[1]);
  fcntl(reading.fd, F_SETFL, O_NONBLOCK);

  const auto deadline = deadlineAfter(request.timeout);
  const pid_t pid = spawnChild(request, writing.fd);
  writing.reset();
  if (pid < 0) return result;
  Supervision(pid, reading.fd, deadline, request.cancelled).untilEnd(result.output);
  result.status = statusOf(pid);
  return result;
}

}  // namespace zelvane::platform
