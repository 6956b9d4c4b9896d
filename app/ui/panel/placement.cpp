#include "app/ui/panel/placement.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace zelvane {
namespace {

constexpr int leastWidth = 280;
constexpr int greatestWidth = 480;
constexpr int leastHeight = 60;
constexpr int leastChosenHeight = 200;
constexpr double widthShare = 0.2;
constexpr int widthJitter = 1;
constexpr int heightJitter = 8;

int widest(const Area& screen) { return std::min(screen.width - 2 * edgeInset, greatestWidth); }

}  // namespace

int effectiveWidth(const ChosenSize& chosen, const Area& screen) {
  const double automatic = std::floor(screen.width * widthShare) - edgeInset;
  const double wanted = std::max<double>(chosen.width.value_or(automatic), leastWidth);
  return static_cast<int>(std::min<double>(widest(screen), wanted));
}

int heightLimit(const ChosenSize& chosen, int available) {
  if (!chosen.maxHeight) return available;
  return static_cast<int>(
      std::min<double>(available, std::max<double>(*chosen.maxHeight, leastChosenHeight)));
}

int availableHeight(const Area& screen) { return screen.height - 2 * edgeInset; }

Area panelFrame(const ChosenSize& chosen, int contentHeight, Anchor anchor, const Area& screen) {
  Area frame;
  frame.width = effectiveWidth(chosen, screen);
  frame.height =
      std::min(std::max(contentHeight, leastHeight), heightLimit(chosen, availableHeight(screen)));
  frame.x = screen.x + screen.width - edgeInset - frame.width;
  frame.y = anchor == Anchor::top ? screen.y + edgeInset
                                  : screen.y + screen.height - edgeInset - frame.height;
  return frame;
}

bool growsSmoothly(const Area& from, const Area& to) {
  return from.width == to.width && from.height > 1 && from.height != to.height;
}

Extent draggedSize(const Extent& start, const Extent& proposed, const Area& screen) {
  Extent size = start;
  size.width = std::min(std::max(proposed.width, leastWidth), widest(screen));
  if (std::abs(proposed.height - start.height) > heightJitter) {
    size.height = std::min(std::max(proposed.height, leastChosenHeight), availableHeight(screen));
  }
  return size;
}

ChosenSize chosenAfterDrag(const ChosenSize& before, const Extent& start, const Extent& now) {
  ChosenSize chosen = before;
  if (std::abs(now.width - start.width) > widthJitter) chosen.width = now.width;
  if (std::abs(now.height - start.height) > heightJitter) chosen.maxHeight = now.height;
  return chosen;
}

}  // namespace zelvane
