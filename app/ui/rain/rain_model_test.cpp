#include "app/ui/rain/rain_model.h"

#include <gtest/gtest.h>
#include <string>

namespace zelvane {
namespace {

/// The dots row by row: "." for a dark one, else its brightness in ninths.
std::string picture(const RainModel& model) {
  std::string text;
  for (std::size_t i = 0; i < RainModel::dots; ++i) {
    if (i > 0 && i % RainModel::side == 0) text += "/";
    text += model.on[i] > 0 ? std::to_string(static_cast<int>(model.on[i] * 9.001)) : ".";
  }
  return text;
}

/// The expected patterns come from a model of its own in another language.
TEST(RainModel, FollowsFromItsSeedBitByBit) {
  constexpr auto greatest = ~std::uint64_t{0};
  struct Case {
    std::uint64_t seed;
    RainMode mode;
    int steps;
    const char* picture;
    std::uint64_t state;  // 0: not checked
  };
  using Mode = RainMode;
  const Case cases[]{
      {1, Mode::frozen, 3, "..9.../..6.../9.4.../6...9./4...6./....4.", 0},
      {1, Mode::waiting, 3, "..9.../..6.../9.4.../6...9./4...6./....4.", 0},
      {greatest, Mode::frozen, 0, "...9../...6.9/...4../....../....../.9....", 0},
      {1, Mode::working, 1, "....../....../....../....../....../......", 10218303843513747618U},
      {1, Mode::working, 40, "99..55/55.922/22.59./9..259/5..925/2.95.2", 4771460534998570948U},
      {177670, Mode::working, 40, ".2.5../...2../....../.9..../.5..../.2....",
       10070291905426078081U},
      {1, Mode::agents, 1, "....../9...../....../....../..9.../......", 14760976124404509328U},
      {1, Mode::agents, 20, "9...99/999.9./.9999./.....9/.99.99/.99..9", 6737132442547970956U},
      {greatest, Mode::agents, 20, "99.9../..9.9./..9.99/..9.../999..9/99..99",
       6649839533009523890U},
  };
  for (const auto& [seed, mode, steps, expected, state] : cases) {
    RainModel model(seed, mode);
    for (int i = 0; i < steps; ++i) model.step(mode);
    EXPECT_EQ(picture(model), expected) << seed << " after " << steps;
    EXPECT_EQ(state == 0 ? state : model.state, state) << seed << " after " << steps;
    EXPECT_EQ(model.tick, steps);
  }
}

TEST(RainModel, StreaksRiseAndNoColumnHoldsMoreThanTwo) {
  RainModel model(7, RainMode::working);
  for (int step = 0; step < 2000; ++step) {
    const auto before = model.drops;
    model.step(RainMode::working);
    for (std::size_t column = 0; column < model.drops.size(); ++column) {
      const auto& heads = model.drops[column];
      ASSERT_LE(heads.size(), 2U);
      std::vector<int> moved;
      for (const int row : before[column]) {
        if (row > -2) moved.push_back(row - 1);
      }
      ASSERT_TRUE(std::equal(moved.begin(), moved.end(), heads.begin()));
      for (const int row : heads) {
        if (row >= 0 && row <= 5) {
          ASSERT_EQ(model.on[static_cast<std::size_t>(row) * 6 + column], 1.0);
        }
      }
    }
  }
}

TEST(RainModel, TheCursorBlinksInTheLastDarkPlace) {
  for (std::uint64_t seed = 0; seed < 3000; ++seed) {
    const RainModel model(seed, RainMode::waiting);
    std::size_t expected = 35;
    while (expected > 0 && model.on[expected] > 0) --expected;
    ASSERT_EQ(model.waitCell, expected) << seed;
  }
  EXPECT_LT(waitOpacity(0), waitOpacity(1));
  EXPECT_EQ(waitOpacity(2), waitOpacity(0));
}

}  // namespace
}  // namespace zelvane
