#include "app/ui/motion/animation_driver.h"

#include <algorithm>
#include <cmath>
#include <utility>
#include <vector>

namespace zelvane {

AnimationDriver::AnimationDriver(Options options) : options_(std::move(options)) {}

void AnimationDriver::painted(Moving& thing) {
  if (active_.count(&thing) > 0 || !thing.due()) return;
  active_.insert(&thing);
  schedule();
}

void AnimationDriver::changed(Moving& thing) {
  // A new one waits until it is painted.
  if (active_.count(&thing) > 0) schedule();
}

void AnimationDriver::forget(Moving& thing) {
  if (active_.erase(&thing) > 0) schedule();
}

void AnimationDriver::setRunning(bool running) {
  if (std::exchange(running_, running) != running) schedule();
}

void AnimationDriver::wake() {
  ++wakeUps_;
  wakesAt_.reset();
  if (!running_) return;
  const Seconds now = options_.now() + leeway;
  // A copy: what advances may come and go.
  for (auto* thing : std::vector<Moving*>(active_.begin(), active_.end())) {
    if (active_.count(thing) == 0) continue;
    const auto due = thing->due();
    if (due && *due > now) continue;
    if (due && thing->seen()) {
      thing->advance(now);
    } else {
      active_.erase(thing);
    }
  }
  schedule();
}

void AnimationDriver::schedule() {
  std::optional<Seconds> next;
  if (running_) {
    for (const auto* thing : active_) {
      const auto due = thing->due();
      if (due) next = next ? std::min(*next, *due) : *due;
    }
  }
  if (std::exchange(wakesAt_, next) == next) return;
  if (!next) return options_.wakeAfter(std::nullopt);
  options_.wakeAfter(std::max(*next - options_.now(), Seconds(0)));
}

Seconds nextBeat(Seconds after, Seconds period) {
  const double beats = std::floor(after / period) + 1;
  const Seconds next = beats * period;
  return next > after ? next : (beats + 1) * period;
}

}  // namespace zelvane
