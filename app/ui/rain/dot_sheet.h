// All dots of a tile fully lit, as one picture: painting a dot is then copying a piece of it.
#pragma once

#include <QtGui/QImage>

#include "app/ui/rain/rain_model.h"
#include "app/ui/theme.h"

namespace zelvane {

class DotSheet {
 public:
  /// The dots in the colour, for a tile `size` points wide on a device with so many pixels a
  /// point. Kept for the next one who asks. Main thread.
  static const DotSheet& of(Rgb color, int size, double ratio);

  /// Paints the dot of the tile at the corner; the painter's opacity counts.
  void paintDot(QPainter& painter, QPointF corner, std::size_t dot) const;

 private:
  DotSheet(Rgb color, int size, double ratio);
  /// The dot's upper left pixel.
  QPoint cornerOf(std::size_t dot) const;

  QImage image_;
  double ratio_;
  int pitch_ = 0;   ///< pixels from dot to dot
  int dot_ = 0;     ///< pixels
  int margin_ = 0;  ///< pixels in front of the first one
};

}  // namespace zelvane
