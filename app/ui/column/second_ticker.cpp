#include "app/ui/column/second_ticker.h"

namespace zelvane {

SecondTicker::SecondTicker(std::function<void()> tick) {
  using namespace std::chrono_literals;
  timer_.setInterval(1s);
  timer_.setTimerType(Qt::CoarseTimer);  // may be late by 5%, to wake together with others
  QObject::connect(&timer_, &QTimer::timeout, &timer_, std::move(tick));
}

void SecondTicker::setRunning(bool running) {
  if (running == timer_.isActive()) return;
  if (running) {
    timer_.start();
  } else {
    timer_.stop();
  }
}

}  // namespace zelvane
