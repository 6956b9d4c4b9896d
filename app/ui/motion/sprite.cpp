#include "app/ui/motion/sprite.h"

namespace zelvane {

Sprite::Sprite(QWidget& host, AnimationDriver& driver) : host_(host), driver_(driver) {}

Sprite::~Sprite() { driver_.forget(*this); }

void Sprite::paint(QPainter& painter, const QRegion& dirty, double opacity) {
  const QRect area = reach();
  if (area.isEmpty() || !dirty.intersects(area)) return;
  painter.save();
  draw(painter, opacity);
  painter.restore();
  driver_.painted(*this);
}

bool Sprite::seen() const { return host_.visibleRegion().intersects(reach()); }

void Sprite::changed() {
  host_.update(reach());
  driver_.changed(*this);
}

}  // namespace zelvane
