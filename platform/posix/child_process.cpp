#include "platform/child_process.h"

#include <algorithm>
#include <array>
#include <csignal>
#include <fcntl.h>

#include "platform/posix/child_parts.h"

namespace zelvane::platform {
namespace {

using Clock = std::chrono::steady_clock;

constexpr auto graceBeforeKill = std::chrono::seconds(2);

/// When a child with this time-out must be asked to end. Longer than a year means for ever.
Clock::time_point deadlineAfter(std::chrono::duration<double> timeout) {
  // What is longer would overflow the clock.
  const auto limit =
      std::clamp(timeout, std::chrono::duration<double>(0), std::chrono::duration<double>(3.2e7));
  return Clock::now() + std::chrono::duration_cast<Clock::duration>(limit);
}

/// Follows a running child until it has ended, asking it to end at the deadline.
class Supervision {
 public:
  Supervision(pid_t pid, int output, Clock::time_point deadline, const std::atomic<bool>* cancelled)
      : events_(pid, output), output_(output), deadline_(deadline), cancelled_(cancelled) {}

  void untilEnd(std::string& output) {
    bool open = true;
    while (true) {
      const auto news = events_.wait(untilDeadline());
      if (open && news.output && readSome(output_, output) == PipeState::ended) {
        open = false;
        events_.forgetOutput();
      }
      if (news.ended) break;
      if (Clock::now() >= deadline_ || (!asked_ && isCancelled())) signalNext();
    }
    if (open) readRest(output_, output);
  }

 private:
  std::chrono::milliseconds untilDeadline() const {
    using std::chrono::milliseconds;
    const auto left = std::chrono::ceil<milliseconds>(deadline_ - Clock::now());
    return std::clamp(left, milliseconds(0), milliseconds(cancelled_ ? 100 : 3'600'000));
  }

  bool isCancelled() const { return cancelled_ && *cancelled_; }

  void signalNext() {
    events_.signal(asked_ ? SIGKILL : SIGTERM);
    asked_ = true;
    deadline_ = Clock::now() + graceBeforeKill;
  }

  ChildEvents events_;
  int output_;
  Clock::time_point deadline_;
  const std::atomic<bool>* cancelled_;
  bool asked_ = false;
};

}  // namespace

ChildResult runChild(const ChildRequest& request) {
  ChildResult result;
  std::array<int, 2> ends{-1, -1};
  if (!openPipe(ends)) return result;
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
