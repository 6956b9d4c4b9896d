#include "platform/child_process.h"

#include <algorithm>
#include <array>
#include <csignal>
#include <ctime>
#include <fcntl.h>
#include <sys/event.h>
#include <unistd.h>

#include "platform/posix/child_parts.h"

namespace zelvane::platform {
namespace {

/// Follows a running child until it has ended, asking it to end at the deadline. One kernel queue
/// tells of its output and of its end.
class Supervision {
 public:
  Supervision(pid_t pid, int output, ChildClock::time_point deadline,
              const std::atomic<bool>* cancelled)
      : pid_(pid), output_(output), queue_(kqueue()), deadline_(deadline), cancelled_(cancelled) {
    fcntl(queue_.fd, F_SETFD, FD_CLOEXEC);
    // Registered one by one: a child that has ended already cannot be followed any more.
    watch(static_cast<std::uintptr_t>(output_), EVFILT_READ, 0);
    followed_ = watch(static_cast<std::uintptr_t>(pid_), EVFILT_PROC, NOTE_EXIT);
  }

  void untilEnd(std::string& output) {
    bool open = true;
    bool ended = false;
    while (!ended) {
      std::array<struct kevent, 2> events{};
      const auto pause = untilDeadline();
      const int count = kevent(queue_.fd, nullptr, 0, events.data(), events.size(), &pause);
      for (int i = 0; i < count; ++i) {
        const auto& event = events[static_cast<std::size_t>(i)];
        if (event.filter == EVFILT_READ && open) open = takeOutput(output);
        if (event.filter == EVFILT_PROC) ended = true;
      }
      if (!followed_ || count < 0) ended = ended || hasEnded(pid_);
      if (!ended && (ChildClock::now() >= deadline_ || (!asked_ && isCancelled()))) signalNext();
    }
    if (open) readRest(output_, output);
  }

 private:
  bool watch(std::uintptr_t what, std::int16_t filter, std::uint32_t notes) {
    struct kevent change {};
    EV_SET(&change, what, filter, EV_ADD, notes, 0, nullptr);
    return kevent(queue_.fd, &change, 1, nullptr, 0, nullptr) == 0;
  }

  /// False at the end of the output, which the queue would report for ever.
  bool takeOutput(std::string& output) {
    if (readSome(output_, output) != PipeState::ended) return true;
    struct kevent change {};
    EV_SET(&change, static_cast<std::uintptr_t>(output_), EVFILT_READ, EV_DELETE, 0, 0, nullptr);
    kevent(queue_.fd, &change, 1, nullptr, 0, nullptr);
    return false;
  }

  timespec untilDeadline() const {
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline_ - ChildClock::now());
    const std::int64_t most = !followed_ ? 50 : cancelled_ ? 100 : 3'600'000;
    const auto milliseconds = std::clamp<std::int64_t>(left.count(), 0, most);
    timespec pause{};
    pause.tv_sec = static_cast<time_t>(milliseconds / 1000);
    pause.tv_nsec = static_cast<long>(milliseconds % 1000) * 1'000'000;
    return pause;
  }

  bool isCancelled() const { return cancelled_ && *cancelled_; }

  void signalNext() {
    // Who ignores the end of children has none left to wait for, and the id may be another's soon.
    if (!hasEnded(pid_)) kill(pid_, asked_ ? SIGKILL : SIGTERM);
    asked_ = true;
    deadline_ = ChildClock::now() + graceBeforeKill;
  }

  pid_t pid_;
  int output_;
  Descriptor queue_;
  ChildClock::time_point deadline_;
  const std::atomic<bool>* cancelled_;
  bool followed_ = false;  ///< whether the queue tells of the end; else the child is asked
  bool asked_ = false;
};

}  // namespace

short keepDescriptorsOut(posix_spawn_file_actions_t&) { return POSIX_SPAWN_CLOEXEC_DEFAULT; }

ChildResult runChild(const ChildRequest& request) {
  ChildResult result;
  std::array<int, 2> ends{-1, -1};
  if (pipe(ends.data()) != 0) return result;
  Descriptor reading(ends[0]);
  Descriptor writing(ends[1]);
  for (const int fd : ends) fcntl(fd, F_SETFD, FD_CLOEXEC);
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
