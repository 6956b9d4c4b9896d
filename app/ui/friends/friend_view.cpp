#include "app/ui/friends/friend_view.h"

#include <cmath>

#include "app/ui/friends/sprite_art.h"

namespace zelvane {
namespace {

constexpr double dimOpacity = 0.5;

/// Random steps keep to the beat of the tiles: rows then wake the process together, and a step of
/// half a second that comes a tenth later is not seen. Regular ones are kept to the point.
constexpr Seconds beat(0.1), fineBeat(0.05);

Seconds beatOf(ZelvaneState state) { return state == ZelvaneState::waiting ? fineBeat : beat; }

/// A distance in points, in whole pixels of the device.
double snapped(double points, double ratio) { return std::round(points * ratio) / ratio; }

}  // namespace

FriendView::FriendView(QWidget& host, AnimationDriver& driver, Chance chance)
    : Sprite(host, driver), chance_(std::move(chance)) {}

void FriendView::configure(const FriendLook& look, const QRect& place) {
  const bool anew = look_ != look || place_.size() != place.size();
  place_ = place;
  if (!anew) return;
  look_ = look;
  motion_ = motionOfLook();
  start_ = shown_ = nextBeat(driver().now(), fineBeat);
  changed();
}

FriendMotion FriendView::motionOfLook() const {
  if (look_->still) return {{{Seconds(0), stillPose(look_->state)}}, Seconds(0)};
  const auto* who = friendAt(Family::all(), look_->index);
  return friendMotion(look_->state, look_->big, who && waddles(*who), chance_);
}

std::optional<Seconds> FriendView::due() const {
  if (!look_) return std::nullopt;
  const auto change = motion_.changeAfter(shown_ - start_);
  if (!change) return std::nullopt;
  constexpr Seconds rounding(1e-6);
  return nextBeat(start_ + *change - rounding, beatOf(look_->state));
}

void FriendView::advance(Seconds now) {
  shown_ = std::max(now, start_);
  changed();
}

void FriendView::draw(QPainter& painter, double opacity) const {
  if (!look_) return;
  const auto& frame = motion_.frameAt(shown_ - start_);
  const auto image = SpriteArt::image(look_->index, frame.pose, look_->big, place_.size());
  if (!image) return;
  const double ratio = pixelsPerPoint(painter);
  painter.setOpacity(opacity * (look_->dim ? dimOpacity : 1));
  // With fewer pixels than the picture has, leaving some out would lose a sleeper's eyes.
  painter.setRenderHint(QPainter::SmoothPixmapTransform, ratio < 2);
  painter.drawImage(
      QRectF(place_).translated(snapped(frame.right, ratio), -snapped(frame.up, ratio)), *image);
}

QRect FriendView::reach() const {
  constexpr int sideways = 5, upwards = 3;
  return place_.isEmpty() ? QRect() : place_.adjusted(-sideways, -upwards, sideways, 0);
}

}  // namespace zelvane
