#include "app/ui/rain/dot_sheet.h"

#include <QtGui/QPainter>
#include <map>
#include <tuple>

#include "app/ui/column/text_style.h"

namespace zelvane {
namespace {

// Of a tile of the full size: dots of 5 points, 7 points apart.
constexpr double fullSize = 40, fullPitch = 7, fullDot = 5, fullRadius = 1.5;
constexpr int leastRounded = 4;  ///< pixels

/// Themes and screens come and go; what they left is not worth keeping.
constexpr std::size_t mostSheets = 64;

}  // namespace

const DotSheet& DotSheet::of(Rgb color, int size, double ratio) {
  using Key = std::tuple<std::uint8_t, std::uint8_t, std::uint8_t, int, double>;
  static std::map<Key, DotSheet> sheets;
  const Key key(color.red, color.green, color.blue, size, ratio);
  const auto found = sheets.find(key);
  if (found != sheets.end()) return found->second;
  if (sheets.size() >= mostSheets) sheets.clear();
  return sheets.emplace(key, DotSheet(color, size, ratio)).first->second;
}

DotSheet::DotSheet(Rgb color, int size, double ratio) : ratio_(ratio) {
  // Dots of whole pixels, all alike: others would be blurred, each in its own way.
  const double share = size * ratio / fullSize;
  pitch_ = static_cast<int>(fullPitch * share);
  dot_ = static_cast<int>(fullDot * share);
  const int pixels = static_cast<int>(size * ratio);
  margin_ = (pixels - (RainModel::side - 1) * pitch_ - dot_) / 2;
  image_ = QImage(pixels, pixels, QImage::Format_ARGB32_Premultiplied);
  image_.fill(Qt::transparent);
  QPainter painter(&image_);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  painter.setBrush(toColor(color));
  // So few pixels have no corners to be rounded.
  const double radius = dot_ < leastRounded ? 0 : fullRadius * share;
  for (std::size_t i = 0; i < RainModel::dots; ++i) {
    painter.drawRoundedRect(QRect(cornerOf(i), QSize(dot_, dot_)), radius, radius);
  }
}

QPoint DotSheet::cornerOf(std::size_t dot) const {
  const auto place = static_cast<int>(dot);
  return {margin_ + place % RainModel::side * pitch_, margin_ + place / RainModel::side * pitch_};
}

void DotSheet::paintDot(QPainter& painter, QPointF corner, std::size_t dot) const {
  const QRect piece(cornerOf(dot), QSize(dot_, dot_));
  painter.drawImage(
      QRectF(corner + QPointF(piece.topLeft()) / ratio_, QSizeF(piece.size()) / ratio_), image_,
      piece);
}

}  // namespace zelvane
