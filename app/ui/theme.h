// The column's colours. Pure, without the toolkit.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "app/model/records/theme_id.h"

namespace zelvane {

/// An sRGB colour.
struct Rgb {
  std::uint8_t red = 0;
  std::uint8_t green = 0;
  std::uint8_t blue = 0;
  std::uint8_t alpha = 255;
  bool operator==(const Rgb&) const = default;
};

/// One theme's colours in one appearance.
struct ThemeSpec {
  Rgb bg;      ///< the panel's background
  Rgb fg;      ///< titles, the product name
  Rgb sub;     ///< subtitles, times, counts
  Rgb line;    ///< dividers, the border; at reduced opacity bands and editors
  Rgb wait;    ///< needs attention
  Rgb onWait;  ///< text on `wait`
  Rgb done;
  Rgb scene;  ///< behind a character
  std::array<Rgb, 6> palette{};
  Rgb paper;
  Rgb ink;
  Rgb alert;
  Rgb zc;  ///< a sleeper's breath
  std::optional<Rgb> zelvane;
  std::optional<Rgb> key;
  bool monoHeader = false;  ///< the product name is drawn smaller and bolder

  bool operator==(const ThemeSpec&) const = default;

  /// The colours of the theme; only the minimal theme looks different when the system is dark.
  static ThemeSpec of(ThemeID id, bool dark);
};

/// The theme's title in the menu.
std::string themeTitle(ThemeID id);

/// A number that is always the same for the same text, for patterns that belong to a session.
std::uint64_t stableSeed(std::string_view text);

}  // namespace zelvane
