// A tile of code rain: tells at a glance what a session does. Main thread.
#pragma once

#include "app/ui/motion/sprite.h"
#include "app/ui/rain/rain_model.h"

namespace zelvane {

class CodeRain : public Sprite {
 public:
  using Sprite::Sprite;

  /// Shows the look at the place, a square; the pattern begins anew only when mode or seed changed.
  void configure(const RainLook& look, const QRect& place);

  std::optional<Seconds> due() const override;
  void advance(Seconds now) override;

 protected:
  void draw(QPainter& painter, double opacity) const override;
  QRect reach() const override { return place_; }

 private:
  std::optional<Seconds> period() const;

  RainLook look_;
  RainModel model_{1, RainMode::frozen};
  QRect place_;
  Seconds shown_{0};
};

}  // namespace zelvane
