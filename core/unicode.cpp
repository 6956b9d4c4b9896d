#include "core/unicode.h"

#include <algorithm>
#include <utf8proc.h>

namespace zelvane {
namespace {

constexpr char32_t replacement = 0xFFFD;
constexpr char32_t ellipsis = U'…';

int columnsOf(char32_t scalar) { return utf8proc_charwidth(static_cast<utf8proc_int32_t>(scalar)); }

utf8proc_category_t categoryOf(char32_t scalar) {
  return utf8proc_category(static_cast<utf8proc_int32_t>(scalar));
}

/// The Unicode marks, embeddings, overrides and isolates of the reading direction.
bool turnsDirection(char32_t scalar) {
  return scalar == 0x061C || scalar == 0x200E || scalar == 0x200F ||
         (scalar >= 0x202A && scalar <= 0x202E) || (scalar >= 0x2066 && scalar <= 0x2069);
}

}  // namespace

std::string printable(std::string_view text) {
  std::u32string line;
  bool blank = false;
  for (const char32_t scalar : scalars(text)) {
    if (turnsDirection(scalar)) continue;
    if (isControl(scalar) || isWhitespace(scalar)) {
      blank = !line.empty();
      continue;
    }
    if (blank) line.push_back(U' ');
    blank = false;
    line.push_back(scalar);
  }
  return utf8(line);
}

bool isUtf8(std::string_view bytes) {
  std::size_t at = 0;
  while (at < bytes.size()) {
    if (static_cast<unsigned char>(bytes[at]) < 0x80) {
      ++at;
      continue;
    }
    utf8proc_int32_t scalar = -1;
    const auto length =
        utf8proc_iterate(reinterpret_cast<const utf8proc_uint8_t*>(bytes.data() + at),
                         static_cast<utf8proc_ssize_t>(bytes.size() - at), &scalar);
    if (length <= 0) return false;
    at += static_cast<std::size_t>(length);
  }
  return true;
}

std::u32string scalars(std::string_view text) {
  std::u32string result;
  result.reserve(text.size());
  while (!text.empty()) {
    utf8proc_int32_t scalar = -1;
    const auto length = utf8proc_iterate(reinterpret_cast<const utf8proc_uint8_t*>(text.data()),
                                         static_cast<utf8proc_ssize_t>(text.size()), &scalar);
    result.push_back(length > 0 ? static_cast<char32_t>(scalar) : replacement);
    text.remove_prefix(length > 0 ? static_cast<std::size_t>(length) : 1);
  }
  return result;
}

std::string utf8(std::u32string_view scalars) {
  std::string result;
  result.reserve(scalars.size());
  for (const char32_t scalar : scalars) {
    utf8proc_uint8_t bytes[4];
    const auto length = utf8proc_encode_char(static_cast<utf8proc_int32_t>(scalar), bytes);
    result.append(reinterpret_cast<const char*>(bytes), static_cast<std::size_t>(length));
  }
  return result;
}

std::string repairedUtf8(std::string_view bytes) { return utf8(scalars(bytes)); }

bool isLineBreak(char32_t scalar) {
  return (scalar >= 0x0A && scalar <= 0x0D) || scalar == 0x85 || scalar == 0x2028 ||
         scalar == 0x2029;
}

bool isWhitespace(char32_t scalar) {
  return isLineBreak(scalar) || scalar == '\t' || categoryOf(scalar) == UTF8PROC_CATEGORY_ZS;
}

bool isAlphanumeric(char32_t scalar) {
  const auto category = categoryOf(scalar);
  return category >= UTF8PROC_CATEGORY_LU && category <= UTF8PROC_CATEGORY_NO;
}

bool isControl(char32_t scalar) { return categoryOf(scalar) == UTF8PROC_CATEGORY_CC; }

std::string lowerCased(std::string_view text) {
  auto result = scalars(text);
  for (char32_t& scalar : result) {
    scalar = static_cast<char32_t>(utf8proc_tolower(static_cast<utf8proc_int32_t>(scalar)));
  }
  return utf8(result);
}

std::string firstUpperCased(std::string_view text) {
  auto result = scalars(text);
  if (result.empty()) return {};
  result[0] = static_cast<char32_t>(utf8proc_toupper(static_cast<utf8proc_int32_t>(result[0])));
  return utf8(result);
}

std::size_t firstCharacterLength(std::u32string_view text) {
  if (text.empty()) return 0;
  utf8proc_int32_t state = 0;
  std::size_t length = 1;
  while (length < text.size() &&
         !utf8proc_grapheme_break_stateful(static_cast<utf8proc_int32_t>(text[length - 1]),
                                           static_cast<utf8proc_int32_t>(text[length]), &state)) {
    ++length;
  }
  return length;
}

int displayWidth(std::string_view text) {
  int columns = 0;
  for (const char32_t scalar : scalars(text)) columns += columnsOf(scalar);
  return columns;
}

std::string fitted(std::string_view text, int columns) {
  if (displayWidth(text) <= columns) return std::string(text);
  std::u32string kept;
  int used = columnsOf(ellipsis);
  for (const char32_t scalar : scalars(text)) {
    used += columnsOf(scalar);
    if (used > columns) break;
    kept.push_back(scalar);
  }
  return columns < 1 ? std::string() : utf8(kept + ellipsis);
}

}  // namespace zelvane
