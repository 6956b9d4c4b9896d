#include "app/ui/motion/cross_fade.h"

namespace zelvane {

CrossFade::CrossFade(QWidget& host, const std::function<void()>& stepped)
    : heightBefore_(host.height()), before_(host.size() * host.devicePixelRatioF()) {
  before_.setDevicePixelRatio(host.devicePixelRatioF());
  before_.fill(Qt::transparent);
  host.render(&before_, QPoint(), QRegion(), QWidget::DrawChildren);
  animation_.setDuration(static_cast<int>(changeTakes.count()));
  animation_.setEasingCurve(QEasingCurve::InOutSine);
  animation_.setStartValue(0.0);
  animation_.setEndValue(1.0);
  QObject::connect(&animation_, &QVariantAnimation::valueChanged, &host, stepped);
  animation_.start();
}

/// Cut, not rounded, as the toolkit cuts the panel's.
int CrossFade::heightTowards(int wanted) const {
  return static_cast<int>(heightBefore_ + (wanted - heightBefore_) * share());
}

void CrossFade::paint(QPainter& painter) const {
  painter.save();
  painter.setOpacity(1 - share());
  painter.drawPixmap(0, 0, before_);
  painter.restore();
}

}  // namespace zelvane
