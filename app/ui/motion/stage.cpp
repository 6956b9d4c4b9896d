#include "app/ui/motion/stage.h"

#include <QtCore/QElapsedTimer>
#include <QtCore/QTimer>
#include <cmath>
#include <random>

namespace zelvane {
namespace {

class LiveStage : public Stage {
 public:
  LiveStage()
      : Stage({.now = [this] { return sinceBegin(); },
               .wakeAfter = [this](std::optional<Seconds> pause) { wakeAfter(pause); }},
              [this] { return even_(numbers_); }) {
    clock_.start();
    timer_.setSingleShot(true);
    // A coarse one may come too early for what it was asked for, and would have to come again.
    timer_.setTimerType(Qt::PreciseTimer);
    QObject::connect(&timer_, &QTimer::timeout, &timer_, [this] { driver.wake(); });
  }

 private:
  Seconds sinceBegin() const {
    return std::chrono::duration_cast<Seconds>(std::chrono::nanoseconds(clock_.nsecsElapsed()));
  }

  void wakeAfter(std::optional<Seconds> pause) {
    if (!pause) return timer_.stop();
    timer_.start(static_cast<int>(std::ceil(pause->count() * 1000)));
  }

  QElapsedTimer clock_;
  QTimer timer_;
  std::mt19937_64 numbers_{std::random_device{}()};
  std::uniform_real_distribution<double> even_{0, 1};
};

}  // namespace

std::shared_ptr<Stage> liveStage() { return std::make_shared<LiveStage>(); }

}  // namespace zelvane
