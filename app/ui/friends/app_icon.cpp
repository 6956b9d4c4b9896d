#include "app/ui/friends/app_icon.h"

#include <QtGui/QPainter>
#include <algorithm>

#include "app/ui/column/text_style.h"
#include "app/ui/friends/friend_art.h"

namespace zelvane {
namespace {

// The cells of the large art, which are made larger or smaller here.
constexpr int cellWidth = 6, cellHeight = 8, below = 4;

/// The character with cells of the given width, four thirds as high.
void drawCharacter(QPainter& painter, const Friend& who, int side, int cell) {
  const int columns = static_cast<int>(who.rows.front().size());
  const int rows = static_cast<int>(who.rows.size());
  const int high = (4 * cell + 1) / 3;
  const int left = (side - columns * cell) / 2, top = (side - rows * high + 1) / 2;
  for (const auto& part : friendArt(who, Pose::stand(), /*big=*/true, columns * cellWidth,
                                    rows * cellHeight + below)) {
    painter.fillRect(left + part.x / cellWidth * cell, top + part.y / cellHeight * high,
                     part.width / cellWidth * cell, part.height / cellHeight * high,
                     toColor(part.color));
  }
}

}  // namespace

QImage appIcon(int side) {
  constexpr double corner = 0.22, share = 0.8;
  QImage icon(side, side, QImage::Format_ARGB32_Premultiplied);
  icon.fill(Qt::transparent);
  QPainter painter(&icon);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  painter.setBrush(toColor(ThemeSpec::of(ThemeID::b, false).scene));
  painter.drawRoundedRect(icon.rect(), corner * side, corner * side);
  painter.setRenderHint(QPainter::Antialiasing, false);
  if (const auto* cat = friendAt(Family::all(), 0)) {
    const auto columns = static_cast<double>(cat->rows.front().size());
    drawCharacter(painter, *cat, side, std::max(1, static_cast<int>(share * side / columns)));
  }
  return icon;
}

}  // namespace zelvane
