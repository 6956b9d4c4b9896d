// The main thread's loop of a program without Qt.
#pragma once

#include <functional>
#include <memory>

#include "core/serial_queue.h"

namespace zelvane {

class RunLoop {
 public:
  RunLoop();
  ~RunLoop();
  RunLoop(const RunLoop&) = delete;
  RunLoop& operator=(const RunLoop&) = delete;

  /// Runs a task on the thread that calls `run`. Any thread.
  void post(std::function<void()> task);
  /// `post` as an Executor that does nothing once the loop is gone.
  Executor executor();
  /// Calls the handler on the loop when one of SIGINT, SIGTERM, SIGHUP or SIGWINCH arrives.
  void onSignal(std::function<void(int signal)> handler);
  /// Runs tasks until `stop`; sleeps while there are none.
  void run();
  /// Any thread.
  void stop();

 private:
  struct State;
  std::shared_ptr<State> state_;
};

}  // namespace zelvane
