// A session's character, acting out what the session does. Main thread.
#pragma once

#include <cstdint>

#include "app/ui/friends/friend_motion.h"
#include "app/ui/motion/sprite.h"

namespace zelvane {

class FriendView : public Sprite {
 public:
  FriendView(QWidget& host, AnimationDriver& driver, Chance chance);

  /// Shows the look at the place; begins the movement anew only when the look changed.
  void configure(const FriendLook& look, const QRect& place);

  std::optional<Seconds> due() const override;
  void advance(Seconds now) override;

 protected:
  void draw(QPainter& painter, double opacity) const override;
  QRect reach() const override;

 private:
  FriendMotion motionOfLook() const;

  Chance chance_;
  std::optional<FriendLook> look_;
  QRect place_;
  FriendMotion motion_;
  Seconds start_{0};
  Seconds shown_{0};  ///< the moment that is shown
};

}  // namespace zelvane
