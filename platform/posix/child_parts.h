// What starting and reading a child process has in common on every system. Stateless; any thread.
#pragma once

#include <array>
#include <chrono>
#include <cstdint>
#include <spawn.h>
#include <string>
#include <sys/types.h>

#include "platform/child_process.h"

namespace zelvane::platform {

/// Closes its descriptor at the end of its life.
struct Descriptor {
  int fd = -1;
  explicit Descriptor(int opened = -1) : fd(opened) {}
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  ~Descriptor() { reset(); }
  void reset();
};

/// Starts the command with its output on `output`, no other descriptor and no signal blocked or
/// ignored; its pid, or -1.
pid_t spawnChild(const ChildRequest& request, int output);

/// What differs by system in that: sees to it that only descriptors 0 to 2 get into the child, by
/// what it adds to the actions or by the spawn flags that it returns.
short keepDescriptorsOut(posix_spawn_file_actions_t& actions);

/// Opens a pipe, reading end first, whose ends stay out of programs that are started.
bool openPipe(std::array<int, 2>& ends);

/// What a child may have done.
struct ChildNews {
  bool output = false;  ///< there is some, or its end
  bool ended = false;
};

/// Waits for a running child in the way of the system, which may tell of its end or not.
class ChildEvents {
 public:
  ChildEvents(pid_t pid, int output);
  /// Waits for news, at most this long.
  ChildNews wait(std::chrono::milliseconds longest);
  /// The output has ended: there are no more news of it.
  void forgetOutput();
  void signal(int number) const;

 private:
  pid_t pid_;
  int output_;
  Descriptor source_;   ///< what the system tells through
  bool tells_ = false;  ///< else the child is asked
};

/// What serves where the system does not tell: looks at the child after 50 milliseconds at most.
ChildNews askChild(pid_t pid, int output, std::chrono::milliseconds longest);

/// Who ignores the end of children has none left to wait for, and the id may be another's soon.
void signalUnlessEnded(pid_t pid, int number);

enum class PipeState { data, empty, ended };

/// Takes one buffer's worth of a pipe that does not block: a child that floods must not keep its
/// supervisor from the clock. Output beyond the limit is dropped.
PipeState readSome(int fd, std::string& output);

/// Takes what an ended child left in the pipe, which holds 64 KiB unless somebody else still
/// writes.
void readRest(int fd, std::string& output);

/// Waits for a child that has ended; its status as in `ChildResult`.
std::int32_t statusOf(pid_t pid);

/// Whether the child has ended, or is not ours to wait for. Leaves its status.
bool hasEnded(pid_t pid);

}  // namespace zelvane::platform
