#include <array>
#include <ctime>
#include <fcntl.h>
#include <sys/event.h>
#include <unistd.h>

#include "platform/posix/child_parts.h"

namespace zelvane::platform {
namespace {

/// Changes what the queue tells of; false when it cannot.
bool change(int queue, int what, std::int16_t filter, std::uint16_t flags, std::uint32_t notes) {
  struct kevent wanted {};
  EV_SET(&wanted, static_cast<std::uintptr_t>(what), filter, flags, notes, 0, nullptr);
  return kevent(queue, &wanted, 1, nullptr, 0, nullptr) == 0;
}

timespec pauseOf(std::chrono::milliseconds time) {
  timespec pause{};
  pause.tv_sec = static_cast<time_t>(time.count() / 1000);
  pause.tv_nsec = static_cast<long>(time.count() % 1000) * 1'000'000;
  return pause;
}

}  // namespace

short keepDescriptorsOut(posix_spawn_file_actions_t&) { return POSIX_SPAWN_CLOEXEC_DEFAULT; }

bool openPipe(std::array<int, 2>& ends) {
  if (pipe(ends.data()) != 0) return false;
  // Between the two calls a child could inherit them; ours are started without any descriptor.
  for (const int fd : ends) fcntl(fd, F_SETFD, FD_CLOEXEC);
  return true;
}

// The source is a kernel queue. It cannot follow a child that has ended already.
ChildEvents::ChildEvents(pid_t pid, int output) : pid_(pid), output_(output), source_(kqueue()) {
  fcntl(source_.fd, F_SETFD, FD_CLOEXEC);
  tells_ = change(source_.fd, output_, EVFILT_READ, EV_ADD, 0) &&
           change(source_.fd, pid_, EVFILT_PROC, EV_ADD, NOTE_EXIT);
}

ChildNews ChildEvents::wait(std::chrono::milliseconds longest) {
  if (!tells_) return askChild(pid_, output_, longest);
  std::array<struct kevent, 2> events{};
  const auto pause = pauseOf(longest);
  const int count = kevent(source_.fd, nullptr, 0, events.data(), events.size(), &pause);
  ChildNews news;
  for (int i = 0; i < count; ++i) {
    const auto filter = events[static_cast<std::size_t>(i)].filter;
    if (filter == EVFILT_READ) news.output = true;
    if (filter == EVFILT_PROC) news.ended = true;
  }
  return news;
}

void ChildEvents::forgetOutput() {
  // The queue would report the end of the output for ever.
  change(source_.fd, output_, EVFILT_READ, EV_DELETE, 0);
  output_ = -1;
}

void ChildEvents::signal(int number) const { signalUnlessEnded(pid_, number); }

}  // namespace zelvane::platform
