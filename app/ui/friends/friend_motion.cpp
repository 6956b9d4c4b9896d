#include "app/ui/friends/friend_motion.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace zelvane {
namespace {

constexpr Seconds scriptLength(60);

double between(double least, double greatest, const Chance& chance) {
  return least + (greatest - least) * chance();
}

/// A minute of work: stepping on the spot, walking and hopping in turns, each for some seconds.
class WorkScript {
 public:
  WorkScript(bool big, bool waddles, const Chance& chance)
      : chance_(chance), waddles_(waddles), reachX_(big ? 3 : 2), reachY_(big ? 4 : 2.5) {}

  std::vector<KeyFrame> write() {
    const double step = between(0.4, 0.65, chance_);
    count_ = static_cast<int>(chance_() * 8);
    double time = 0;
    while (time < scriptLength.count()) {
      const Kind kind = nextKind();
      const double end = std::min(time + between(2, 6, chance_), scriptLength.count());
      while (time < end) {
        addStep(kind, time);
        time += step * between(0.85, 1.15, chance_);
      }
    }
    return std::move(frames_);
  }

 private:
  enum class Kind { legs, walk, hop };

  Kind nextKind() const {
    const double choice = chance_();
    if (choice < 0.4) return Kind::legs;
    return choice < 0.75 ? Kind::walk : Kind::hop;
  }

  void addStep(Kind kind, double time) {
    ++count_;
    const double right = kind == Kind::walk ? reachX_ * swing() : 0;
    const double up = kind == Kind::hop && count_ % 3 == 0 ? reachY_ * 0.5 : 0;
    frames_.push_back({Seconds(time), Pose::legs(count_ % 2), right, up});
  }

  /// How far a walk is out of the middle, as a share of its reach.
  double swing() const {
    constexpr std::array<double, 4> toddle{0, 1, 0, -1};
    constexpr std::array<double, 8> waddle{0, 1, 2, 1, 0, -1, -2, -1};
    const auto count = static_cast<std::size_t>(count_);
    return waddles_ ? 0.75 * waddle[count % waddle.size()] : toddle[count % toddle.size()];
  }

  const Chance& chance_;
  bool waddles_;
  double reachX_, reachY_;
  int count_ = 0;
  std::vector<KeyFrame> frames_;
};

FriendMotion shuffle(const Chance& chance) {
  const Seconds first(between(0.8, 1.1, chance));
  const Seconds total(between(1.6, 2.2, chance));
  return {{{Seconds(0), Pose::legs(0)}, {first, Pose::legs(1)}}, total};
}

FriendMotion wave() {
  constexpr Seconds half(0.55);
  return {{{Seconds(0), Pose::paperUp(0)}, {half, Pose::paperUp(1)}}, 2 * half};
}

/// The loops that have passed.
double loopsBefore(Seconds sinceStart, Seconds duration) {
  return std::floor(sinceStart / duration);
}

}  // namespace

const KeyFrame& FriendMotion::frameAt(Seconds sinceStart) const {
  if (duration <= Seconds(0)) return frames.front();
  const Seconds within = sinceStart - loopsBefore(sinceStart, duration) * duration;
  const auto next =
      std::upper_bound(frames.begin() + 1, frames.end(), within,
                       [](Seconds time, const KeyFrame& frame) { return time < frame.at; });
  return *(next - 1);
}

std::optional<Seconds> FriendMotion::changeAfter(Seconds sinceStart) const {
  if (duration <= Seconds(0)) return std::nullopt;
  // Compared as it is handed out: a rounding must not name a moment that is over.
  const double loop = loopsBefore(sinceStart, duration);
  for (const double later : {0.0, 1.0}) {
    for (const auto& frame : frames) {
      const Seconds change = (loop + later) * duration + frame.at;
      if (change > sinceStart) return change;
    }
  }
  return sinceStart + duration;
}

Pose stillPose(ZelvaneState state) {
  switch (state) {
    case ZelvaneState::working:
    case ZelvaneState::agents:
      return Pose::legs(0);
    case ZelvaneState::waiting:
      return Pose::paperUp(0);
    case ZelvaneState::done:
      return Pose::stand();
    case ZelvaneState::idle:
      break;
  }
  return Pose::sleep();
}

FriendMotion friendMotion(ZelvaneState state, bool big, bool waddles, const Chance& chance) {
  switch (state) {
    case ZelvaneState::working:
      return {WorkScript(big, waddles, chance).write(), scriptLength};
    case ZelvaneState::agents:
      return shuffle(chance);
    case ZelvaneState::waiting:
      return wave();
    case ZelvaneState::done:
    case ZelvaneState::idle:
      break;
  }
  return {{{Seconds(0), stillPose(state)}}, Seconds(0)};
}

bool waddles(const Friend& who) { return who.gait == "뒤뚱"; }

}  // namespace zelvane
