#include "platform/child_process.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <memory>
#include <poll.h>
#include <spawn.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

extern char** environ;

namespace zelvane::platform {
namespace {

using Clock = std::chrono::steady_clock;

constexpr std::size_t largestOutput = std::size_t{64} << 20;
constexpr auto graceBeforeKill = std::chrono::seconds(2);

/// Closes its descriptor at the end of its life.
struct Descriptor {
  int fd = -1;
  explicit Descriptor(int opened = -1) : fd(opened) {}
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  ~Descriptor() { reset(); }
  void reset() {
    if (fd >= 0) close(fd);
    fd = -1;
  }
};

std::vector<char*> pointers(std::vector<std::string>& words) {
  std::vector<char*> list;
  for (auto& word : words) list.push_back(word.data());
  list.push_back(nullptr);
  return list;
}

std::vector<std::string> mergedEnvironment(const std::vector<std::string>& added) {
  std::vector<std::string> merged = added;
  const auto nameOf = [](const std::string& entry) { return entry.substr(0, entry.find('=')); };
  for (char** inherited = environ; inherited && *inherited; ++inherited) {
    const std::string entry = *inherited;
    const bool replaced = std::any_of(added.begin(), added.end(), [&](const std::string& other) {
      return nameOf(other) == nameOf(entry);
    });
    if (!replaced) merged.push_back(entry);
  }
  return merged;
}

/// Starts the command with its output on `output`; its pid, or -1.
pid_t spawn(const ChildRequest& request, int output) {
  std::vector<std::string> words{request.executable};
  words.insert(words.end(), request.arguments.begin(), request.arguments.end());
  auto environment = mergedEnvironment(request.environment);

  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_addopen(&actions, 0, "/dev/null", O_RDONLY, 0);
  posix_spawn_file_actions_adddup2(&actions, output, 1);
  posix_spawn_file_actions_addopen(&actions, 2, "/dev/null", O_WRONLY, 0);
  posix_spawn_file_actions_addclosefrom_np(&actions, 3);
  if (request.folder) posix_spawn_file_actions_addchdir_np(&actions, request.folder->c_str());

  // A caller that blocks or ignores signals must not pass that on: the child could not be ended.
  posix_spawnattr_t attributes;
  posix_spawnattr_init(&attributes);
  sigset_t none;
  sigset_t all;
  sigemptyset(&none);
  sigfillset(&all);
  posix_spawnattr_setsigmask(&attributes, &none);
  posix_spawnattr_setsigdefault(&attributes, &all);
  posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);

  pid_t pid = -1;
  const int error = posix_spawn(&pid, request.executable.c_str(), &actions, &attributes,
                                pointers(words).data(), pointers(environment).data());
  posix_spawnattr_destroy(&attributes);
  posix_spawn_file_actions_destroy(&actions);
  return error == 0 ? pid : -1;
}

enum class PipeState { data, empty, ended };

/// Takes one buffer's worth: a child that floods must not keep its supervisor from the clock.
PipeState readSome(int fd, std::string& output) {
  std::array<char, 65536> buffer;
  const ssize_t count = read(fd, buffer.data(), buffer.size());
  if (count == 0) return PipeState::ended;
  if (count < 0) return errno == EAGAIN || errno == EINTR ? PipeState::empty : PipeState::ended;
  const auto room = largestOutput - std::min(output.size(), largestOutput);
  output.append(buffer.data(), std::min(static_cast<std::size_t>(count), room));
  return PipeState::data;
}

/// Takes what an ended child left in the pipe, which holds 64 KiB unless somebody else still
/// writes.
void readRest(int fd, std::string& output) {
  for (int round = 0; round < 16 && readSome(fd, output) == PipeState::data; ++round) {
  }
}

/// Follows a running child until it has ended, asking it to end at the deadline.
class Supervision {
 public:
  Supervision(pid_t pid, int output, Clock::time_point deadline, const std::atomic<bool>* cancelled)
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
      if (events[0].revents != 0 || (ended_.fd < 0 && hasEnded())) break;
      if (Clock::now() >= deadline_ || (!asked_ && isCancelled())) signalNext();
    }
    if (open) readRest(output_, output);
  }

 private:
  int millisecondsLeft() const {
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline_ - Clock::now());
    const std::int64_t most = ended_.fd < 0 ? 50 : cancelled_ ? 100 : 3'600'000;
    return static_cast<int>(std::clamp<std::int64_t>(left.count(), 0, most));
  }

  bool isCancelled() const { return cancelled_ && *cancelled_; }

  bool hasEnded() const {
    siginfo_t info{};
    return waitid(P_PID, static_cast<id_t>(pid_), &info, WEXITED | WNOHANG | WNOWAIT) != 0 ||
           info.si_pid == pid_;
  }

  void signalNext() {
    const int signal = asked_ ? SIGKILL : SIGTERM;
    // Who ignores the end of children has none left to wait for, and the id may be another's soon.
    if (ended_.fd >= 0) {
      syscall(SYS_pidfd_send_signal, ended_.fd, signal, nullptr, 0);
    } else if (!hasEnded()) {
      kill(pid_, signal);
    }
    asked_ = true;
    deadline_ = Clock::now() + graceBeforeKill;
  }

  pid_t pid_;
  int output_;
  Descriptor ended_;
  Clock::time_point deadline_;
  const std::atomic<bool>* cancelled_;
  bool asked_ = false;
};

}  // namespace

ChildResult runChild(const ChildRequest& request) {
  ChildResult result;
  std::array<int, 2> ends{-1, -1};
  if (pipe2(ends.data(), O_CLOEXEC) != 0) return result;
  Descriptor reading(ends[0]);
  Descriptor writing(ends[1]);
  fcntl(reading.fd, F_SETFL, O_NONBLOCK);

  // Longer than a year means for ever, and would overflow the clock.
  const auto limit = std::clamp(request.timeout, std::chrono::duration<double>(0),
                                std::chrono::duration<double>(3.2e7));
  const auto deadline = Clock::now() + std::chrono::duration_cast<Clock::duration>(limit);
  const pid_t pid = spawn(request, writing.fd);
  writing.reset();
  if (pid < 0) return result;
  Supervision(pid, reading.fd, deadline, request.cancelled).untilEnd(result.output);

  int status = 0;
  pid_t waited = 0;
  while ((waited = waitpid(pid, &status, 0)) < 0 && errno == EINTR) {
  }
  if (waited != pid) return result;
  result.status = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
  return result;
}

}  // namespace zelvane::platform
