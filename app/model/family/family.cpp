#include "app/model/family/family.h"

#include <charconv>
#include <optional>

#include "core/bundle.h"
#include "core/json_file.h"
#include "core/unicode.h"

namespace zelvane {
namespace {

constexpr std::size_t largestFile = std::size_t{1} << 20;
constexpr std::uint32_t grey = 0x888888;
constexpr const char* usualGait = "종종";

std::optional<std::vector<std::u32string>> artOf(const Json& character) {
  const Json* list = get::list(character, "rows");
  if (!list || list->empty()) return std::nullopt;
  std::vector<std::u32string> rows;
  for (const auto& row : *list) {
    if (!row.is_string()) return std::nullopt;
    rows.push_back(scalars(row.get_ref<const std::string&>()));
  }
  return rows;
}

/// Of a number sign and hexadecimal digits; grey when they are none.
std::uint32_t colorFrom(std::string_view text) {
  text.remove_prefix(text.empty() ? 0 : 1);
  std::uint32_t color = 0;
  const char* const end = text.data() + text.size();
  const auto [last, error] = std::from_chars(text.data(), end, color, 16);
  return error == std::errc() && last == end ? color & 0xffffff : grey;
}

std::vector<Friend> shipped() {
  const auto path = Bundle::resource("family", "json");
  const auto text = path ? readFile(*path, largestFile) : std::nullopt;
  return text ? loadFamily(*text) : std::vector<Friend>();
}

}  // namespace

std::vector<Friend> loadFamily(std::string_view text) {
  std::vector<Friend> family;
  const auto file = parseJson(text);
  const Json* characters = file ? get::list(*file, "characters") : nullptr;
  if (!characters) return family;
  for (const auto& character : *characters) {
    auto rows = artOf(character);
    const auto color = get::str(character, "color");
    if (!rows || !color) continue;
    family.push_back(
        {std::move(*rows), colorFrom(*color), get::str(character, "gait").value_or(usualGait)});
  }
  return family;
}

const std::vector<Friend>& Family::all() {
  static const std::vector<Friend> family = shipped();
  return family;
}

}  // namespace zelvane
