#include "platform/linux/rectangles.h"

#include <gtest/gtest.h>

namespace zelvane::platform {
namespace {

int pixelsOf(const std::vector<Rectangle>& pieces) {
  int pixels = 0;
  for (const auto& piece : pieces) {
    pixels += (piece.right - piece.left) * (piece.bottom - piece.top);
  }
  return pixels;
}

TEST(Uncovered, LeavesWhatNoCoverHides) {
  struct Case {
    const char* name;
    std::vector<Rectangle> covers;
    int visiblePixels;
  };
  const Case cases[]{
      {"nothing", {}, 200},
      {"beside", {{0, 0, 100, 300}}, 200},
      {"exactly", {{100, 100, 110, 120}}, 0},
      {"larger", {{0, 0, 500, 500}}, 0},
      {"a corner", {{105, 110, 200, 200}}, 150},
      {"a hole", {{102, 102, 104, 104}}, 196},
      {"two that overlap", {{100, 100, 108, 120}, {106, 100, 110, 119}}, 2},
      {"two halves", {{90, 90, 105, 130}, {105, 90, 130, 130}}, 0},
  };
  for (const auto& [name, covers, visiblePixels] : cases) {
    std::vector<Rectangle> pieces{{100, 100, 110, 120}};
    for (const auto& cover : covers) pieces = uncovered(pieces, cover);
    EXPECT_EQ(pixelsOf(pieces), visiblePixels) << name;
  }
}

}  // namespace
}  // namespace zelvane::platform
