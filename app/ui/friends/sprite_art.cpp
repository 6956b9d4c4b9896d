#include "app/ui/friends/sprite_art.h"

#include <QtGui/QPainter>
#include <map>
#include <mutex>
#include <tuple>

#include "app/ui/column/text_style.h"

namespace zelvane {
namespace {

constexpr int scale = 2;
/// In points; nothing in the column is wider.
constexpr double largest = 1000;

QImage drawn(const Friend& who, Pose pose, bool big, int width, int height) {
  QImage image(width, height, QImage::Format_ARGB32_Premultiplied);
  image.fill(Qt::transparent);
  QPainter painter(&image);
  for (const auto& rect : friendArt(who, pose, big, width, height)) {
    painter.fillRect(rect.x, rect.y, rect.width, rect.height, toColor(rect.color));
  }
  return image;
}

}  // namespace

std::optional<QImage> SpriteArt::image(std::int64_t index, Pose pose, bool big, QSizeF size) {
  using Key = std::tuple<std::int64_t, Pose, bool, int, int>;
  static std::mutex lock;
  static std::map<Key, QImage> images;

  const auto* who = friendAt(Family::all(), index);
  const bool drawable = size.width() <= largest && size.height() <= largest &&
                        size.width() * scale >= 1 && size.height() * scale >= 1;
  if (!who || !drawable) return std::nullopt;
  const int width = static_cast<int>(size.width() * scale);
  const int height = static_cast<int>(size.height() * scale);
  const std::lock_guard guard(lock);
  auto& kept = images[Key(index, pose, big, width, height)];
  if (kept.isNull()) kept = drawn(*who, pose, big, width, height);
  return kept;
}

}  // namespace zelvane
