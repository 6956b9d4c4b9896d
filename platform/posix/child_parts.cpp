#include "platform/posix/child_parts.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

extern char** environ;

namespace zelvane::platform {
namespace {

constexpr std::size_t largestOutput = std::size_t{64} << 20;

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

}  // namespace

void Descriptor::reset() {
  if (fd >= 0) close(fd);
  fd = -1;
}

pid_t spawnChild(const ChildRequest& request, int output) {
  std::vector<std::string> words{request.executable};
  words.insert(words.end(), request.arguments.begin(), request.arguments.end());
  auto environment = mergedEnvironment(request.environment);

  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_addopen(&actions, 0, "/dev/null", O_RDONLY, 0);
  posix_spawn_file_actions_adddup2(&actions, output, 1);
  posix_spawn_file_actions_addopen(&actions, 2, "/dev/null", O_WRONLY, 0);
  const short flags = keepDescriptorsOut(actions);
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
  posix_spawnattr_setflags(
      &attributes, static_cast<short>(flags | POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF));

  pid_t pid = -1;
  const int error = posix_spawn(&pid, request.executable.c_str(), &actions, &attributes,
                                pointers(words).data(), pointers(environment).data());
  posix_spawnattr_destroy(&attributes);
  posix_spawn_file_actions_destroy(&actions);
  return error == 0 ? pid : -1;
}

PipeState readSome(int fd, std::string& output) {
  std::array<char, 65536> buffer;
  const ssize_t count = read(fd, buffer.data(), buffer.size());
  if (count == 0) return PipeState::ended;
  if (count < 0) return errno == EAGAIN || errno == EINTR ? PipeState::empty : PipeState::ended;
  const auto room = largestOutput - std::min(output.size(), largestOutput);
  output.append(buffer.data(), std::min(static_cast<std::size_t>(count), room));
  return PipeState::data;
}

void readRest(int fd, std::string& output) {
  for (int round = 0; round < 16 && readSome(fd, output) == PipeState::data; ++round) {
  }
}

std::int32_t statusOf(pid_t pid) {
  int status = 0;
  pid_t waited = 0;
  while ((waited = waitpid(pid, &status, 0)) < 0 && errno == EINTR) {
  }
  if (waited != pid) return -1;
  return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

ChildNews askChild(pid_t pid, int output, std::chrono::milliseconds longest) {
  constexpr std::chrono::milliseconds betweenLooks(50);
  pollfd wanted{output, POLLIN, 0};
  poll(&wanted, 1, static_cast<int>(std::min(longest, betweenLooks).count()));
  return {.output = wanted.revents != 0, .ended = hasEnded(pid)};
}

void signalUnlessEnded(pid_t pid, int number) {
  if (!hasEnded(pid)) kill(pid, number);
}

bool hasEnded(pid_t pid) {
  siginfo_t info{};
  return waitid(P_PID, static_cast<id_t>(pid), &info, WEXITED | WNOHANG | WNOWAIT) != 0 ||
         info.si_pid == pid;
}

}  // namespace zelvane::platform
