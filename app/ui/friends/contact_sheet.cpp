// Draws every character in every pose and size on one sheet, as the column draws them:
//   contact_sheet FILE.png
#include <QtGui/QGuiApplication>
#include <QtGui/QPainter>
#include <array>
#include <iostream>

#include "app/ui/column/text_style.h"
#include "app/ui/friends/sprite_art.h"

using namespace zelvane;

namespace {

constexpr std::array poses{Pose::Kind::legs,    Pose::Kind::legs,  Pose::Kind::paperUp,
                           Pose::Kind::paperUp, Pose::Kind::stand, Pose::Kind::sleep};
constexpr QSize small(34, 30), big(64, 48);
constexpr int gap = 6;

Pose poseAt(std::size_t column) { return {poses[column], static_cast<int>(column % 2)}; }

/// One half of the sheet: the ground of one theme.
void drawHalf(QPainter& painter, int left, const ThemeSpec& theme) {
  const auto count = static_cast<std::int64_t>(Family::all().size());
  for (std::int64_t index = 0; index < count; ++index) {
    const int y = gap + static_cast<int>(index) * (big.height() + gap);
    int x = left + gap;
    for (const bool large : {false, true}) {
      for (std::size_t column = 0; column < poses.size(); ++column) {
        const QSize size = large ? big : small;
        const auto image = SpriteArt::image(index, poseAt(column), large, size);
        painter.fillRect(QRect(QPoint(x, y), size), toColor(theme.line, 0.5));
        if (image) painter.drawImage(QRect(QPoint(x, y), size), *image);
        x += size.width() + gap;
      }
    }
  }
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::cerr << "contact_sheet FILE.png\n";
    return 2;
  }
  qputenv("QT_QPA_PLATFORM", "offscreen");
  const QGuiApplication application(argc, argv);
  const int half = gap + static_cast<int>(poses.size()) * (small.width() + big.width() + 2 * gap);
  const int height = gap + static_cast<int>(Family::all().size()) * (big.height() + gap);
  QImage sheet(QSize(2 * half, height) * 2, QImage::Format_ARGB32_Premultiplied);
  sheet.setDevicePixelRatio(2);
  QPainter painter(&sheet);
  int left = 0;
  for (const bool dark : {false, true}) {
    const auto theme = ThemeSpec::of(ThemeID::c, dark);
    painter.fillRect(left, 0, half, height, toColor(theme.bg));
    drawHalf(painter, left, theme);
    left += half;
  }
  painter.end();
  return sheet.save(QString::fromLocal8Bit(argv[1]), "PNG") ? 0 : 1;
}
