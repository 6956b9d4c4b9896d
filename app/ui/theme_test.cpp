#include "app/ui/theme.h"

#include <cmath>
#include <gtest/gtest.h>

namespace zelvane {
namespace {

TEST(ThemeSpec, OnlyTheMinimalThemeFollowsTheAppearance) {
  EXPECT_NE(ThemeSpec::of(ThemeID::c, false), ThemeSpec::of(ThemeID::c, true));
  EXPECT_EQ(ThemeSpec::of(ThemeID::a, false), ThemeSpec::of(ThemeID::a, true));
  EXPECT_EQ(ThemeSpec::of(ThemeID::b, false), ThemeSpec::of(ThemeID::b, true));
}

TEST(ThemeSpec, KeepsTheTwoColoursThatDoNotTurnDark) {
  const auto light = ThemeSpec::of(ThemeID::c, false);
  const auto dark = ThemeSpec::of(ThemeID::c, true);
  EXPECT_EQ(dark.ink, light.ink);
  EXPECT_EQ(dark.zc, light.zc);
  EXPECT_EQ(dark.ink, (Rgb{118, 118, 111}));
}

TEST(ThemeSpec, SceneAndFurnitureBelongToThePictorialThemes) {
  for (const bool dark : {false, true}) {
    const auto minimal = ThemeSpec::of(ThemeID::c, dark);
    EXPECT_EQ(minimal.scene.alpha, 0);
    EXPECT_FALSE(minimal.zelvane || minimal.key || minimal.monoHeader);
  }
  for (const auto id : {ThemeID::a, ThemeID::b}) {
    const auto spec = ThemeSpec::of(id, false);
    EXPECT_EQ(spec.scene.alpha, 255);
    EXPECT_TRUE(spec.zelvane && spec.key);
    EXPECT_EQ(spec.monoHeader, id == ThemeID::a);
  }
}

double luminance(Rgb color) {
  const auto linear = [](std::uint8_t value) {
    const double v = value / 255.0;
    return v <= 0.04045 ? v / 12.92 : std::pow((v + 0.055) / 1.055, 2.4);
  };
  return 0.2126 * linear(color.red) + 0.7152 * linear(color.green) + 0.0722 * linear(color.blue);
}

double contrast(Rgb one, Rgb other) {
  const double a = luminance(one), b = luminance(other);
  return (std::max(a, b) + 0.05) / (std::min(a, b) + 0.05);
}

/// A slip of a digit in the table mostly shows as text that cannot be read.
TEST(ThemeSpec, TextsCanBeReadOnTheBackground) {
  for (const auto id : allThemes) {
    for (const bool dark : {false, true}) {
      const auto spec = ThemeSpec::of(id, dark);
      EXPECT_GT(contrast(spec.fg, spec.bg), 10) << rawValue(id);
      EXPECT_GT(contrast(spec.sub, spec.bg), 4) << rawValue(id);
      EXPECT_GT(contrast(spec.wait, spec.bg), 3.5) << rawValue(id);
      EXPECT_GT(contrast(spec.done, spec.bg), 3.5) << rawValue(id);
      EXPECT_GT(contrast(spec.onWait, spec.wait), 3.5) << rawValue(id);
      EXPECT_LT(contrast(spec.line, spec.bg), 1.6) << rawValue(id);
    }
  }
}

TEST(StableSeed, IsTheSameForTheSameBytes) {
  EXPECT_EQ(stableSeed(""), 5381u);
  EXPECT_EQ(stableSeed("a"), 177670u);
  EXPECT_EQ(stableSeed("ab"), 177670u * 33 + 98);
  EXPECT_EQ(stableSeed("\xff"), 5381u * 33 + 255);  // bytes count from 0 to 255
}

}  // namespace
}  // namespace zelvane
