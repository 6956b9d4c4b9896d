// What starting and reading a child process has in common on every system. Stateless; any thread.
#pragma once

#include <chrono>
#include <cstdint>
#include <spawn.h>
#include <string>
#include <sys/types.h>
#include <vector>

#include "platform/child_process.h"

namespace zelvane::platform {

using ChildClock = std::chrono::steady_clock;

constexpr auto graceBeforeKill = std::chrono::seconds(2);

/// Closes its descriptor at the end of its life.
struct Descriptor {
  int fd = -1;
  explicit Descriptor(int opened = -1) : fd(opened) {}
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  ~Descriptor() { reset(); }
  void reset();
};

/// When a child with this time-out must be asked to end. Longer than a year means for ever.
ChildClock::time_point deadlineAfter(std::chrono::duration<double> timeout);

/// Starts the command with its output on `output`, no other descriptor and no signal blocked or
/// ignored; its pid, or -1.
pid_t spawnChild(const ChildRequest& request, int output);

/// What differs by system in that: sees to it that only descriptors 0 to 2 get into the child, by
/// what it adds to the actions or by the spawn flags that it returns.
short keepDescriptorsOut(posix_spawn_file_actions_t& actions);

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
