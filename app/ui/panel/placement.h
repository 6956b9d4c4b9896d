// Where the column stands and how large it is. Pure; in points, y grows downwards.
#pragma once

#include <optional>

namespace zelvane {

struct Area {
  int x = 0;
  int y = 0;
  int width = 0;
  int height = 0;
  bool operator==(const Area&) const = default;
};

struct Extent {
  int width = 0;
  int height = 0;
  bool operator==(const Extent&) const = default;
};

/// The sizes that the user chose by dragging; absent ones are automatic.
struct ChosenSize {
  std::optional<double> width;
  std::optional<double> maxHeight;
  bool operator==(const ChosenSize&) const = default;
};

enum class Anchor { top, bottom };

/// The column's distance from the edges of the usable screen.
inline constexpr int edgeInset = 10;

/// The column's width on a screen whose usable area is `screen`.
int effectiveWidth(const ChosenSize& chosen, const Area& screen);

/// The largest height of the column, when `available` is free; a chosen one is never below 200.
int heightLimit(const ChosenSize& chosen, int available);

/// What is free for the column between the top and the bottom of the usable area.
int availableHeight(const Area& screen);

/// The column's frame for a content of the height.
Area panelFrame(const ChosenSize& chosen, int contentHeight, Anchor anchor, const Area& screen);

/// Whether a change of the frame is the same column growing or shrinking, which is animated.
bool growsSmoothly(const Area& from, const Area& to);

/// The size to take while the user drags: `proposed` within the limits; the height stays as it was
/// at the `start` until it is clear that the drag means it.
Extent draggedSize(const Extent& start, const Extent& proposed, const Area& screen);

/// The chosen sizes when a drag led from `start` to `now`; `before` is kept where it changed
/// little.
ChosenSize chosenAfterDrag(const ChosenSize& before, const Extent& start, const Extent& now);

}  // namespace zelvane
