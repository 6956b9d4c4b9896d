// Rectangles of the screen, and what is left of them behind others. Pure.
#pragma once

#include <algorithm>
#include <vector>

namespace zelvane::platform {

struct Rectangle {
  int left = 0;
  int top = 0;
  int right = 0;   ///< first column outside
  int bottom = 0;  ///< first row outside
  bool operator==(const Rectangle&) const = default;
  bool empty() const { return left >= right || top >= bottom; }
};

/// What a cover leaves of the pieces, in pieces that do not overlap.
inline std::vector<Rectangle> uncovered(const std::vector<Rectangle>& pieces,
                                        const Rectangle& cover) {
  std::vector<Rectangle> left;
  for (const auto& piece : pieces) {
    const Rectangle shared{std::max(piece.left, cover.left), std::max(piece.top, cover.top),
                           std::min(piece.right, cover.right),
                           std::min(piece.bottom, cover.bottom)};
    if (shared.empty()) {
      left.push_back(piece);
      continue;
    }
    for (const Rectangle rest : {Rectangle{piece.left, piece.top, piece.right, shared.top},
                                 Rectangle{piece.left, shared.bottom, piece.right, piece.bottom},
                                 Rectangle{piece.left, shared.top, shared.left, shared.bottom},
                                 Rectangle{shared.right, shared.top, piece.right, shared.bottom}}) {
      if (!rest.empty()) left.push_back(rest);
    }
  }
  return left;
}

}  // namespace zelvane::platform
