// Counts events from other threads and waits for them, with a limit instead of a fixed sleep.
#pragma once

#include <chrono>
#include <condition_variable>
#include <mutex>

namespace zelvane::test {

class EventCounter {
 public:
  void add() {
    const std::lock_guard lock(mutex_);
    ++count_;
    changed_.notify_all();
  }
  int count() {
    const std::lock_guard lock(mutex_);
    return count_;
  }
  /// True as soon as at least `count` events came; false when they did not within the limit.
  bool waitFor(int count, std::chrono::seconds limit = std::chrono::seconds(20)) {
    std::unique_lock lock(mutex_);
    return changed_.wait_for(lock, limit, [&] { return count_ >= count; });
  }

 private:
  std::mutex mutex_;
  std::condition_variable changed_;
  int count_ = 0;
};

}  // namespace zelvane::test
