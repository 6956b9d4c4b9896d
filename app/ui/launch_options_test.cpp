#include "app/ui/launch_options.h"

#include <gtest/gtest.h>

namespace zelvane {
namespace {

TEST(LaunchOptions, PictureWidthIsClampedAndFallsBack) {
  const std::pair<const char*, int> cases[]{
      {"300", 300}, {"100", 280}, {"999", 480},   {"wide", 284},  {"300px", 284},
      {"", 284},    {"-1", 280},  {"1e300", 480}, {"312.5", 312}, {"nan", 284},
  };
  for (const auto& [text, expected] : cases) {
    EXPECT_EQ(launchOptions({"--render", "a.png", "--width", text}).width, expected) << text;
  }
  EXPECT_EQ(launchOptions({"--width"}).width, 284);
}

TEST(LaunchOptions, SampleModeIsOnWithEitherOptionEvenWithoutItsValue) {
  EXPECT_FALSE(launchOptions({"--showcase", "--theme", "a"}).sample);
  const auto bare = launchOptions({"--render"});
  EXPECT_TRUE(bare.sample);
  EXPECT_FALSE(bare.renderPath);
  const auto words = launchOptions({"--demo", "three"});
  EXPECT_TRUE(words.sample);
  EXPECT_FALSE(words.demo);
  EXPECT_EQ(launchOptions({"--demo", "3"}).demo, 3);
}

TEST(LaunchOptions, OptionsStandAnywhereAndUnknownThemesAreLeftOut) {
  const auto options = launchOptions({"what", "--theme", "b", "--dark", "--render", "p.png"});
  EXPECT_EQ(options.theme, ThemeID::b);
  EXPECT_EQ(options.renderPath, "p.png");
  EXPECT_TRUE(options.dark);
  EXPECT_FALSE(options.showcase);
  EXPECT_FALSE(launchOptions({"--theme", "x"}).theme);
}

}  // namespace
}  // namespace zelvane
