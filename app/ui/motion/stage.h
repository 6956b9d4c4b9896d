// What everything that moves in one column shares: the driver and chance. Main thread.
#pragma once

#include <memory>

#include "app/ui/friends/friend_motion.h"
#include "app/ui/motion/animation_driver.h"

namespace zelvane {

struct Stage {
  AnimationDriver driver;
  Chance chance;

  Stage(AnimationDriver::Options options, Chance even)
      : driver(std::move(options)), chance(std::move(even)) {}
  virtual ~Stage() = default;
};

/// A stage on the toolkit's timers, with chance from the system.
std::shared_ptr<Stage> liveStage();

}  // namespace zelvane
