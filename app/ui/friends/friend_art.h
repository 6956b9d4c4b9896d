// Which pixels a character is made of. Pure, without the toolkit.
#pragma once

#include <compare>
#include <cstdint>
#include <vector>

#include "app/model/family/family.h"
#include "app/ui/theme.h"

namespace zelvane {

/// What a character does in one picture. `frame` tells the two pictures of walking and of holding
/// the paper up apart.
struct Pose {
  enum class Kind { legs, paperUp, stand, sleep };
  Kind kind = Kind::stand;
  int frame = 0;  ///< 0 or 1

  static Pose legs(int frame) { return {Kind::legs, frame}; }
  static Pose paperUp(int frame) { return {Kind::paperUp, frame}; }
  static Pose stand() { return {Kind::stand}; }
  static Pose sleep() { return {Kind::sleep}; }
  bool operator==(const Pose&) const = default;
  auto operator<=>(const Pose&) const = default;  // NOLINT(modernize-use-nullptr): misread
};

/// A filled rectangle of pixels, y down; it may reach beyond the picture.
struct ArtRect {
  int x = 0, y = 0, width = 0, height = 0;
  Rgb color;
  bool operator==(const ArtRect&) const = default;
};

/// The rectangles of the character, to be filled in this order, on a picture of the size in pixels:
/// it stands in the middle of the lower edge. `big` takes the larger cells.
std::vector<ArtRect> friendArt(const Friend& who, Pose pose, bool big, int width, int height);

/// The body's colour.
Rgb bodyColor(const Friend& who);

/// The character with the index; null when there is none.
const Friend* friendAt(const std::vector<Friend>& family, std::int64_t index);

}  // namespace zelvane
