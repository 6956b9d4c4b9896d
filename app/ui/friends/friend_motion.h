// How a character moves: which picture it shows from when on, and how far out of its place. Pure,
// with chance handed in, without the toolkit.
#pragma once

#include <functional>
#include <optional>
#include <vector>

#include "core/time.h"

#include "app/model/records/session.h"
#include "app/ui/friends/friend_art.h"

namespace zelvane {

/// An even choice in [0, 1).
using Chance = std::function<double()>;

/// Which character is shown, and how.
struct FriendLook {
  std::int64_t index = 0;  ///< of the character; an unknown one leaves its place empty
  ZelvaneState state = ZelvaneState::idle;
  bool big = false;    ///< drawn with the larger cells
  bool dim = false;    ///< at half opacity
  bool still = false;  ///< shown without any movement
  bool operator==(const FriendLook&) const = default;
};

/// What is shown from a moment on.
struct KeyFrame {
  Seconds at{0};
  Pose pose;
  double right = 0;  ///< points out of its place
  double up = 0;
  bool operator==(const KeyFrame&) const = default;
};

/// A loop of key frames, the first one at 0.
struct FriendMotion {
  std::vector<KeyFrame> frames;
  Seconds duration{0};  ///< of the loop; 0 for a picture that stays

  /// What is shown so long after the start.
  const KeyFrame& frameAt(Seconds sinceStart) const;
  /// When that changes, as time since the start; nothing for a picture that stays.
  std::optional<Seconds> changeAfter(Seconds sinceStart) const;
};

/// The pose that stands for the state where nothing moves.
Pose stillPose(ZelvaneState state);

/// How a character shows the state. Those who waddle walk in another rhythm.
FriendMotion friendMotion(ZelvaneState state, bool big, bool waddles, const Chance& chance);

bool waddles(const Friend& who);

}  // namespace zelvane
