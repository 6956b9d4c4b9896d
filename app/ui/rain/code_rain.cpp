#include "app/ui/rain/code_rain.h"

#include "app/ui/rain/dot_sheet.h"

namespace zelvane {
namespace {

constexpr Seconds fast(0.1), slow(0.5);

/// Where nothing moves, a pattern stands for an empty grid that would fill only with time.
RainMode laidOut(RainMode mode, bool still) {
  return still && mode != RainMode::frozen ? RainMode::waiting : mode;
}

}  // namespace

void CodeRain::configure(const RainLook& look, const QRect& place) {
  if (look == look_ && place == place_) return;
  const bool anew = look.mode != look_.mode || look.seed != look_.seed || look.still != look_.still;
  look_ = look;
  place_ = place;
  if (anew) {
    model_ = RainModel(look.seed, laidOut(look.mode, look.still));
    shown_ = driver().now();
  }
  changed();
}

std::optional<Seconds> CodeRain::period() const {
  if (look_.still || look_.mode == RainMode::frozen) return std::nullopt;
  return look_.mode == RainMode::waiting ? slow : fast;
}

std::optional<Seconds> CodeRain::due() const {
  const auto beat = period();
  if (!beat) return std::nullopt;
  return nextBeat(shown_, *beat);
}

void CodeRain::advance(Seconds now) {
  shown_ = now;
  model_.step(look_.mode);
  changed();
}

void CodeRain::draw(QPainter& painter, double opacity) const {
  const double ratio = pixelsPerPoint(painter);
  const auto& dots = DotSheet::of(look_.color, place_.width(), ratio);
  const bool waits = look_.mode == RainMode::waiting;
  for (std::size_t i = 0; i < RainModel::dots; ++i) {
    if (waits && i == model_.waitCell) continue;
    painter.setOpacity(opacity * dotOpacity(model_.on[i]));
    dots.paintDot(painter, place_.topLeft(), i);
  }
  if (!waits) return;
  // What cannot blink is lit: it still tells that the session waits.
  painter.setOpacity(opacity * (look_.still ? 1 : waitOpacity(model_.tick)));
  DotSheet::of(look_.waitColor, place_.width(), ratio)
      .paintDot(painter, place_.topLeft(), model_.waitCell);
}

}  // namespace zelvane
