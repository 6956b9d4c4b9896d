#include "app/ui/panel/placement.h"

#include <gtest/gtest.h>

namespace zelvane {
namespace {

TEST(EffectiveWidth, IsAFifthOfTheScreenWithinLimits) {
  struct Case {
    int screenWidth;
    std::optional<double> chosen;
    int expected;
  };
  const Case cases[]{
      {1440, {}, 280},                                         // a fifth is 278
      {1600, {}, 310},    {2560, {}, 480},    {290, {}, 270},  // never wider than the screen
      {1600, 350.0, 350}, {1600, 100.0, 280}, {1600, 1e300, 480},
      {1600, -5.0, 280},  {400, 470.0, 380},  {1603, {}, 310},  // the fifth is cut, not rounded
  };
  for (const auto& [screenWidth, chosen, expected] : cases) {
    const Area screen{0, 0, screenWidth, 900};
    EXPECT_EQ(effectiveWidth({.width = chosen}, screen), expected) << screenWidth;
  }
}

TEST(PanelFrame, StandsAtTheAnchorWithinTheLimits) {
  const Area screen{100, 30, 1600, 870};
  struct Case {
    const char* name;
    std::optional<double> maxHeight;
    int contentHeight;
    Anchor anchor;
    Area expected;
  };
  const Case cases[]{
      {"content", {}, 300, Anchor::top, {1380, 40, 310, 300}},
      {"content from below", {}, 300, Anchor::bottom, {1380, 590, 310, 300}},
      {"too little content", {}, 12, Anchor::top, {1380, 40, 310, 60}},
      {"too much content", {}, 2000, Anchor::top, {1380, 40, 310, 850}},
      {"too much content from below", {}, 2000, Anchor::bottom, {1380, 40, 310, 850}},
      {"chosen limit", 240.0, 500, Anchor::top, {1380, 40, 310, 240}},
      {"content below the chosen limit", 240.0, 100, Anchor::top, {1380, 40, 310, 100}},
      {"chosen limit too small", 100.0, 500, Anchor::top, {1380, 40, 310, 200}},
      {"chosen limit too large", 5000.0, 2000, Anchor::top, {1380, 40, 310, 850}},
  };
  for (const auto& [name, maxHeight, contentHeight, anchor, expected] : cases) {
    EXPECT_EQ(panelFrame({.maxHeight = maxHeight}, contentHeight, anchor, screen), expected)
        << name;
  }
}

TEST(HeightLimit, YieldsToTheScreenOnly) {
  EXPECT_EQ(heightLimit({.maxHeight = 150.0}, 850), 200);
  EXPECT_EQ(heightLimit({.maxHeight = 150.0}, 120), 120);
  EXPECT_EQ(heightLimit({}, 120), 120);
}

TEST(GrowsSmoothly, OnlyForAChangeOfTheHeightOfAColumnThatStandsThere) {
  const Area from{10, 10, 300, 200};
  EXPECT_TRUE(growsSmoothly(from, {10, 10, 300, 201}));
  EXPECT_TRUE(growsSmoothly(from, {10, 60, 300, 150}));
  EXPECT_FALSE(growsSmoothly(from, {0, 10, 310, 250}));
  EXPECT_FALSE(growsSmoothly(from, {50, 10, 300, 200}));
  EXPECT_FALSE(growsSmoothly({10, 10, 300, 1}, from));
}

TEST(DraggedSize, StaysWithinLimitsAndIgnoresJitterOfTheHeight) {
  const Area screen{0, 0, 1600, 900};
  const Extent start{310, 300};
  const std::pair<Extent, Extent> cases[]{
      {{360, 300}, {360, 300}}, {{360, 308}, {360, 300}},  {{360, 309}, {360, 309}},
      {{360, 291}, {360, 291}}, {{100, 300}, {280, 300}},  {{900, 300}, {480, 300}},
      {{310, 20}, {310, 200}},  {{310, 5000}, {310, 880}},
  };
  for (const auto& [proposed, expected] : cases) {
    EXPECT_EQ(draggedSize(start, proposed, screen), expected)
        << proposed.width << "x" << proposed.height;
  }
  EXPECT_EQ(draggedSize(start, {900, 300}, {0, 0, 400, 900}).width, 380);
}

TEST(ChosenAfterDrag, KeepsWhatTheDragDidNotMean) {
  const ChosenSize before{.maxHeight = 500.0};
  const Extent start{310, 300};
  EXPECT_EQ(chosenAfterDrag(before, start, {360, 300}), (ChosenSize{360.0, 500.0}));
  EXPECT_EQ(chosenAfterDrag(before, start, {311, 308}), before);
  EXPECT_EQ(chosenAfterDrag(before, start, {312, 309}), (ChosenSize{312.0, 309.0}));
  EXPECT_EQ(chosenAfterDrag({}, start, start), ChosenSize{});
}

}  // namespace
}  // namespace zelvane
