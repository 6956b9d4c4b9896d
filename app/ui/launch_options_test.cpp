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

TEST(LaunchOptions, AMistakeIsToldAndWhatIsOnlyOddIsNot) {
  using Arguments = std::vector<std::string>;
  const std::pair<Arguments, const char*> mistakes[]{
      {{"--dark", "--bogus\n", "x"}, "모르는 옵션이에요: --bogus"},
      {{"--showcase", "a.png"}, "모르는 옵션이에요: a.png"},
      {{""}, "모르는 옵션이에요: "},
      {{"--render", "a.png", "--theme"}, "--theme 뒤에 값이 빠졌어요."},
      {{"--width"}, "--width 뒤에 값이 빠졌어요."},
      {{"--demo", "-1"}, "--demo 에는 0에서 10000 사이의 수를 써 주세요."},
      {{"--demo", "10001"}, "--demo 에는 0에서 10000 사이의 수를 써 주세요."},
  };
  for (const auto& [arguments, mistake] : mistakes) {
    EXPECT_EQ(launchOptions(arguments).mistake, mistake);
  }
  const Arguments fine[]{{},
                         {"--render"},
                         {"--demo"},
                         {"--demo", "three"},
                         {"--demo", "99999999999"},
                         {"--render", "a", "--width", "wide", "--theme", "x"},
                         {"--render", "--showcase"},
                         {"--width", "--theme", "a", "-h"}};
  for (const auto& arguments : fine) EXPECT_EQ(launchOptions(arguments).mistake, "");
}

TEST(LaunchOptions, OptionsStandAnywhereAndUnknownThemesAreLeftOut) {
  const auto options = launchOptions({"--theme", "b", "--dark", "--render", "p.png"});
  EXPECT_EQ(options.theme, ThemeID::b);
  EXPECT_EQ(options.renderPath, "p.png");
  EXPECT_TRUE(options.dark);
  EXPECT_FALSE(options.showcase);
  EXPECT_FALSE(launchOptions({"--theme", "x"}).theme);
}

}  // namespace
}  // namespace zelvane
