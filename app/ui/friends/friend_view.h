// A session's character, acting out what the session does. Main thread.
#pragma once

#include <cstdint>

#include "app/ui/friends/friend_motion.h"
#include "app/ui/motion/sprite.h"

namespace zelvane {

class FriendView : public Sprite {
 public:
  struct Look {
    std::int64_t index = 0;  ///< of the character; an unknown one leaves its place empty
    ZelvaneState state = ZelvaneState::idle;
    bool big = false;    ///< drawn with the larger cells
    bool dim = false;    ///< at half opacity
    bool still = false;  ///< shown without any movement
    bool operator==(const Look&) const = default;
  };

  FriendView(QWidget& host, AnimationDriver& driver, Chance chance);

  /// Shows the look at the place; begins the movement anew only when the look changed.
  void configure(const Look& look, const QRect& place);

  std::optional<Seconds> due() const override;
  void advance(Seconds now) override;

 protected:
  void draw(QPainter& painter, double opacity) const override;
  QRect reach() const override;

 private:
  FriendMotion motionOfLook() const;

  Chance chance_;
  std::optional<Look> look_;
  QRect place_;
  FriendMotion motion_;
  Seconds start_{0};
  Seconds shown_{0};  ///< the moment that is shown
};

}  // namespace zelvane
