// Time that passes only when it is told to: what the simulator's world and the queues of the code
// under test live by. One thread.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <utility>

#include "core/time.h"

namespace zelvane::test {

class VirtualTime {
 public:
  using Task = std::function<void()>;

  /// The one that everything in the process lives by.
  static VirtualTime& shared();

  /// Forgets everything: another life begins.
  void reset() { *this = VirtualTime(); }

  /// What the wall clock shows.
  Time wall() const { return wallAtStart_ + uptime_; }
  /// How long the machine has run; goes on evenly, whatever is done to the clock.
  Seconds uptime() const { return uptime_; }
  /// The clock is set, or the machine slept: the wall clock moves, nothing else does.
  void moveClock(Seconds by) { wallAtStart_ += by; }

  /// Runs the task once the delay has passed.
  void after(Seconds delay, Task task);
  /// Lets time pass and runs what becomes due. May be called by a task: then the task takes long.
  void advance(Seconds span);
  /// Whether a task that takes long is under way.
  bool isNested() const { return depth_ > 1; }

 private:
  // Before any real time: what the product has just written is then never too old for it.
  Time wallAtStart_ = timeAt(1'700'000'000);
  Seconds uptime_{0};
  std::uint64_t number_ = 0;
  std::map<std::pair<Seconds, std::uint64_t>, Task> tasks_;  ///< by moment and order
  int depth_ = 0;
};

/// A process ends without a word: nothing that its queues still hold will run, and its folder
/// watchers fall silent. What is made afterwards belongs to the next process.
void killQueues();
void killWatchers();

/// Tells the watchers of a folder, a moment later, that something in it changed.
void folderChanged(const std::string& folder);

}  // namespace zelvane::test
