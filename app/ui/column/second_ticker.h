// The clock of all running working times. Main thread.
#pragma once

#include <QtCore/QTimer>
#include <functional>

namespace zelvane {

/// Calls back once a second while it runs; while it does not there is no timer.
class SecondTicker {
 public:
  explicit SecondTicker(std::function<void()> tick);
  void setRunning(bool running);
  bool running() const { return timer_.isActive(); }

 private:
  QTimer timer_;
};

}  // namespace zelvane
