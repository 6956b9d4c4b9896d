#include "app/ui/rain/dot_sheet.h"

#include <QtGui/QPainter>
#include <algorithm>
#include <cmath>
#include <map>
#include <tuple>

#include "app/ui/column/text_style.h"

namespace zelvane {
namespace {

// Of a tile of the full size: dots of 5 points, 7 points apart.
constexpr double fullSize = 40, fullPitch = 7, fullDot = 5, fullRadius = 1.5;

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

DotSheet::DotSheet(Rgb color, int size, double ratio)
    : ratio_(ratio), pitch_(fullPitch * size / fullSize) {
  const int pixels = static_cast<int>(std::ceil(size * ratio));
  image_ = QImage(pixels, pixels, QImage::Format_ARGB32_Premultiplied);
  image_.setDevicePixelRatio(ratio);
  image_.fill(Qt::transparent);
  const double share = size / fullSize;
  QPainter painter(&image_);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  painter.setBrush(toColor(color));
  for (int row = 0; row < RainModel::side; ++row) {
    for (int column = 0; column < RainModel::side; ++column) {
      painter.drawRoundedRect(
          QRectF(column * pitch_, row * pitch_, fullDot * share, fullDot * share),
          fullRadius * share, fullRadius * share);
    }
  }
}

void DotSheet::paintDot(QPainter& painter, QPointF corner, std::size_t dot) const {
  const auto side = static_cast<std::size_t>(RainModel::side);
  const auto first = [this](std::size_t place) {
    const double pixel = std::floor(static_cast<double>(place) * pitch_ * ratio_);
    return std::min(static_cast<int>(pixel), image_.width());
  };
  const QPoint from(first(dot % side), first(dot / side));
  const QPoint to(first(dot % side + 1), first(dot / side + 1));
  painter.drawImage(corner + QPointF(from) / ratio_, image_,
                    QRectF(from, QSize(to.x() - from.x(), to.y() - from.y())));
}

}  // namespace zelvane
