// A queue of work on a thread of its own: one task after the other, in order.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include "core/time.h"

namespace zelvane {

/// Runs a task somewhere: on a queue, on the main thread, at once. Callable from any thread.
using Executor = std::function<void(std::function<void()>)>;

class SerialQueue {
 public:
  using Task = std::function<void()>;

  /// Starts the thread, which sleeps while there is nothing to do; the label names it.
  explicit SerialQueue(const std::string& label);
  /// Stops.
  ~SerialQueue();
  SerialQueue(const SerialQueue&) = delete;
  SerialQueue& operator=(const SerialQueue&) = delete;

  /// Waits for the running task and drops all waiting ones; what is posted from then on never runs.
  /// Not to be called by one of its tasks.
  void stop();
  /// Runs the task after all those posted before. Any thread.
  void post(Task task);
  /// Posts the task once the delay has passed. Any thread.
  void postAfter(Seconds delay, Task task);
  /// Posts the task again and again, the first time after one interval, for the queue's life.
  void postEvery(Seconds interval, Task task);

 private:
  struct State;
  std::unique_ptr<State> state_;
};

}  // namespace zelvane
