#include "app/ui/friends/friend_art.h"

#include <algorithm>

namespace zelvane {
namespace {

constexpr Rgb eye{28, 25, 23};
constexpr Rgb paper{255, 255, 255};
constexpr Rgb paperEdge{0, 0, 0, 46};
constexpr Rgb ink{184, 173, 158};

/// Draws one character in one pose.
class Drawing {
 public:
  Drawing(const Friend& who, Pose pose, bool big, int width, int height)
      : who_(who), pose_(pose), cellWidth_(big ? 6 : 4), cellHeight_(big ? 8 : 5) {
    const int margin = big ? 4 : 2;
    artWidth_ = static_cast<int>(who.rows.front().size()) * cellWidth_;
    left_ = (width - artWidth_) / 2;
    top_ = height - margin - static_cast<int>(who.rows.size()) * cellHeight_;
  }

  std::vector<ArtRect> all() {
    const auto legs = std::find_if(who_.rows.begin(), who_.rows.end(), [](const auto& row) {
      return row.find(U'L') != std::u32string::npos;
    });
    int y = top_;
    for (auto row = who_.rows.begin(); row != who_.rows.end(); ++row) {
      addRow(*row, y, row == legs);
      y += cellHeight_;
    }
    if (pose_.kind == Pose::Kind::paperUp) addPaper();
    return std::move(rects_);
  }

 private:
  void addRow(const std::u32string& row, int y, bool legRow) {
    int legs = 0;
    int x = left_;
    for (const char32_t cell : row) {
      const bool leg = legRow && cell == U'L';
      const bool lifted = leg && pose_.kind == Pose::Kind::legs && legs % 2 == pose_.frame;
      if (leg) ++legs;
      if (cell != U'.') add(x, y, cellWidth_, lifted ? cellHeight_ / 2 : cellHeight_, body_);
      if (cell == U'E') addEye(x, y);
      x += cellWidth_;
    }
  }

  void addEye(int x, int y) {
    if (pose_.kind == Pose::Kind::sleep) {
      add(x, y + cellHeight_ * 104 / 256, cellWidth_, cellHeight_ / 4, eye);
    } else {
      add(x, y, cellWidth_, cellHeight_, eye);
    }
  }

  /// A sheet with three lines of writing, held up at the right.
  void addPaper() {
    const int x = left_ + artWidth_ - 3 * cellWidth_;
    const int lift = cellHeight_ * 22 / 10 + (pose_.frame == 1 ? 2 * cellHeight_ / 5 : 0);
    const int y = std::max(top_ - lift, 1);
    const int width = 5 * cellWidth_, height = 2 * cellHeight_;
    add(x - 1, y - 1, width + 2, height + 2, paperEdge);
    add(x, y, width, height, paper);
    const int line = y + cellHeight_ * 44 / 100;
    add(x + 2, line, width - 4, 1, ink);
    add(x + 2, line + cellHeight_ / 2, width - 4, 1, ink);
    add(x + 2, line + cellHeight_, width - 6, 1, ink);
  }

  void add(int x, int y, int width, int height, Rgb color) {
    rects_.push_back({x, y, width, height, color});
  }

  const Friend& who_;
  Pose pose_;
  int cellWidth_, cellHeight_, artWidth_, left_, top_;
  Rgb body_ = bodyColor(who_);
  std::vector<ArtRect> rects_;
};

}  // namespace

std::vector<ArtRect> friendArt(const Friend& who, Pose pose, bool big, int width, int height) {
  if (who.rows.empty()) return {};
  return Drawing(who, pose, big, width, height).all();
}

Rgb bodyColor(const Friend& who) {
  return {static_cast<std::uint8_t>(who.color >> 16), static_cast<std::uint8_t>(who.color >> 8),
          static_cast<std::uint8_t>(who.color)};
}

const Friend* friendAt(const std::vector<Friend>& family, std::int64_t index) {
  if (index < 0 || static_cast<std::uint64_t>(index) >= family.size()) return nullptr;
  return &family[static_cast<std::size_t>(index)];
}

}  // namespace zelvane
