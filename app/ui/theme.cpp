#include "app/ui/theme.h"

#include "core/localization.h"

namespace zelvane {
namespace {

constexpr Rgb white{255, 255, 255};
constexpr Rgb nearBlack{17, 17, 17};
constexpr Rgb clear{0, 0, 0, 0};

ThemeSpec minimalLight() {
  return {
      .bg = {251, 251, 249},
      .fg = {29, 29, 27},
      .sub = {118, 118, 111},
      .line = {232, 232, 228},
      .wait = {212, 86, 31},
      .onWait = white,
      .done = {63, 138, 74},
      .scene = clear,
      .palette = {{{63, 138, 74},
                   {47, 127, 181},
                   {181, 72, 127},
                   {181, 138, 31},
                   {212, 86, 31},
                   {106, 85, 181}}},
      .paper = {29, 29, 27},
      .ink = {118, 118, 111},
      .alert = {212, 86, 31},
      .zc = {154, 154, 147},
  };
}

/// `ink` and `zc` stay those of the light appearance: they lie on coloured ground.
ThemeSpec minimalDark() {
  return {
      .bg = {29, 29, 29},
      .fg = {240, 240, 238},
      .sub = {154, 154, 147},
      .line = {44, 44, 44},
      .wait = {255, 138, 77},
      .onWait = nearBlack,
      .done = {124, 201, 138},
      .scene = clear,
      .palette = {{{124, 201, 138},
                   {111, 179, 232},
                   {227, 139, 182},
                   {224, 185, 79},
                   {255, 138, 77},
                   {169, 155, 235}}},
      .paper = {240, 240, 238},
      .ink = {118, 118, 111},
      .alert = {255, 138, 77},
      .zc = {154, 154, 147},
  };
}

ThemeSpec pixel() {
  return {
      .bg = {7, 9, 12},
      .fg = {242, 245, 247},
      .sub = {138, 150, 163},
      .line = {28, 35, 44},
      .wait = {255, 201, 77},
      .onWait = nearBlack,
      .done = {124, 255, 107},
      .scene = {14, 18, 23},
      .palette = {{{124, 255, 107},
                   {92, 225, 255},
                   {255, 107, 214},
                   {255, 216, 77},
                   {255, 138, 77},
                   {178, 140, 255}}},
      .paper = {242, 245, 247},
      .ink = {7, 9, 12},
      .alert = {255, 201, 77},
      .zc = {138, 150, 163},
      .zelvane = Rgb{28, 35, 44},
      .key = Rgb{58, 69, 82},
      .monoHeader = true,
  };
}

ThemeSpec warmOffice() {
  return {
      .bg = {248, 243, 234},
      .fg = {59, 47, 37},
      .sub = {133, 114, 95},
      .line = {227, 216, 196},
      .wait = {194, 86, 47},
      .onWait = white,
      .done = {95, 127, 78},
      .scene = {230, 220, 201},
      .palette = {{{127, 154, 106},
                   {196, 106, 74},
                   {210, 162, 58},
                   {95, 134, 168},
                   {138, 95, 134},
                   {79, 143, 134}}},
      .paper = white,
      .ink = {133, 114, 95},
      .alert = {194, 86, 47},
      .zc = {133, 114, 95},
      .zelvane = Rgb{168, 116, 74},
      .key = Rgb{216, 204, 182},
  };
}

}  // namespace

ThemeSpec ThemeSpec::of(ThemeID id, bool dark) {
  switch (id) {
    case ThemeID::a:
      return pixel();
    case ThemeID::b:
      return warmOffice();
    case ThemeID::c:
      break;
  }
  return dark ? minimalDark() : minimalLight();
}

std::string themeTitle(ThemeID id) {
  switch (id) {
    case ThemeID::a:
      return L("픽셀");
    case ThemeID::b:
      return L("따뜻한 사무실");
    case ThemeID::c:
      break;
  }
  return L("미니멀");
}

std::uint64_t stableSeed(std::string_view text) {
  std::uint64_t seed = 5381;
  for (const char byte : text) seed = seed * 33 + static_cast<unsigned char>(byte);
  return seed;
}

}  // namespace zelvane
