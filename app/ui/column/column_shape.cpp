#include "app/ui/column/column_shape.h"

#include "app/ui/column/text_style.h"

namespace zelvane {
namespace {

constexpr double radius = 12;

}  // namespace

void paintColumnGround(QPainter& painter, const QRect& column, const ThemeSpec& theme) {
  constexpr double halfBorder = 0.5;
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  painter.setBrush(toColor(theme.bg));
  painter.drawRoundedRect(column, radius, radius);
  painter.setPen(QPen(toColor(theme.line), 1));
  painter.setBrush(Qt::NoBrush);
  painter.drawRoundedRect(QRectF(column).adjusted(halfBorder, halfBorder, -halfBorder, -halfBorder),
                          radius - halfBorder, radius - halfBorder);
  painter.restore();
}

QBitmap columnMask(const QSize& size) {
  QBitmap mask(size);
  mask.clear();
  QPainter painter(&mask);
  painter.setPen(Qt::NoPen);
  painter.setBrush(Qt::color1);
  painter.drawRoundedRect(QRect(QPoint(0, 0), size), radius, radius);
  return mask;
}

QRegion roundedAtBottom(const QRect& rectangle) {
  const int size = static_cast<int>(radius);
  const QRect left(rectangle.left(), rectangle.bottom() + 1 - size, size, size);
  const QRect right = left.translated(rectangle.width() - size, 0);
  const QRegion corners = QRegion(left) + QRegion(right);
  const QRegion leftRound(left.left(), left.top() - size, 2 * size, 2 * size, QRegion::Ellipse);
  const QRegion rightRound(right.left() - size, right.top() - size, 2 * size, 2 * size,
                           QRegion::Ellipse);
  return QRegion(rectangle) - corners + (corners & (leftRound + rightRound));
}

}  // namespace zelvane
