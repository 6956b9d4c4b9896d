// Which of the column's themes the user chose.
#pragma once

#include <array>
#include <optional>
#include <string_view>

namespace zelvane {

/// In menu order. The names are the saved values, too.
enum class ThemeID { c, a, b };

inline constexpr std::array<ThemeID, 3> allThemes{ThemeID::c, ThemeID::a, ThemeID::b};

constexpr std::string_view rawValue(ThemeID theme) {
  return theme == ThemeID::a ? "a" : theme == ThemeID::b ? "b" : "c";
}

/// The theme with the saved value; nothing for any other text.
constexpr std::optional<ThemeID> themeFromRawValue(std::string_view text) {
  for (const ThemeID theme : allThemes) {
    if (rawValue(theme) == text) return theme;
  }
  return std::nullopt;
}

}  // namespace zelvane
