// A small moving picture inside a widget that paints itself. Main thread.
#pragma once

#include <QtCore/QRect>
#include <QtGui/QPainter>
#include <QtGui/QRegion>
#include <QtWidgets/QWidget>

#include "app/ui/motion/animation_driver.h"

namespace zelvane {

class Sprite : public Moving {
 public:
  /// Both must outlive the sprite.
  Sprite(QWidget& host, AnimationDriver& driver);
  ~Sprite() override;
  Sprite(const Sprite&) = delete;
  Sprite& operator=(const Sprite&) = delete;

  /// Paints it when the dirty region touches it, at the opacity on top of its own.
  void paint(QPainter& painter, const QRegion& dirty, double opacity);
  bool seen() const final;

 protected:
  virtual void draw(QPainter& painter, double opacity) const = 0;
  /// Whatever it may touch, with its movements.
  virtual QRect reach() const = 0;
  /// Has the host paint it anew, and the driver look again when it is due.
  void changed();

  /// Of what is painted on in the end: the widget's own would be wrong in a picture of it.
  static double pixelsPerPoint(const QPainter& painter) { return painter.deviceTransform().m11(); }

  AnimationDriver& driver() const { return driver_; }

 private:
  QWidget& host_;
  AnimationDriver& driver_;
};

}  // namespace zelvane
