// A stage whose time moves by hand.
#pragma once

#include "app/ui/motion/stage.h"

namespace zelvane {

struct TestStage : Stage {
  explicit TestStage(double chanceOf = 0.5)
      : Stage({.now = [this] { return time; },
               .wakeAfter =
                   [this](std::optional<Seconds> pause) {
                     wakesAt = pause ? std::optional(time + *pause) : std::nullopt;
                   }},
              [chanceOf] { return chanceOf; }) {}

  /// Lets the time pass, with every wake-up that was asked for; how many these were.
  std::uint64_t pass(Seconds span) {
    const auto before = driver.wakeUps();
    const Seconds end = time + span;
    while (wakesAt && *wakesAt <= end) {
      time = *wakesAt;
      wakesAt.reset();
      driver.wake();
    }
    time = end;
    return driver.wakeUps() - before;
  }

  Seconds time{1000};
  std::optional<Seconds> wakesAt;
};

}  // namespace zelvane
