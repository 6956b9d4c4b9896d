#include "app/notes/notes_text.h"

#include <algorithm>

#include "core/text.h"
#include "core/unicode.h"

namespace zelvane::NotesText {
namespace {

constexpr int longestTitle = 80;

/// Bytes of the UTF-8 character that begins at this one.
std::size_t lengthFrom(std::string_view text, std::size_t at) {
  std::size_t next = at + 1;
  while (next < text.size() && (text[next] & 0xC0) == 0x80) ++next;
  return next - at;
}

bool isBlank(std::string_view character) {
  const auto decoded = scalars(character);
  return std::all_of(decoded.begin(), decoded.end(), isWhitespace);
}

}  // namespace

std::optional<std::string> clean(const std::optional<std::string>& title) {
  if (!title) return std::nullopt;
  const auto line = scalars(trimmed(oneLine(*title)));
  std::size_t length = 0;
  for (int i = 0; i < longestTitle && length < line.size(); ++i) {
    length += firstCharacterLength(std::u32string_view(line).substr(length));
  }
  return nonEmpty(utf8(std::u32string_view(line).substr(0, length)));
}

std::optional<std::string> kept(std::optional<std::string> memo) {
  if (!memo) return std::nullopt;
  // What is not UTF-8 could not be written as JSON, and would keep every other note from being so.
  if (!isUtf8(*memo)) memo = repairedUtf8(*memo);
  if (stripped(*memo).empty()) return std::nullopt;
  return memo;
}

std::string_view stripped(std::string_view text) {
  while (!text.empty()) {
    const auto length = lengthFrom(text, 0);
    if (!isBlank(text.substr(0, length))) break;
    text.remove_prefix(length);
  }
  while (!text.empty()) {
    std::size_t begin = text.size() - 1;
    while (begin > 0 && (text[begin] & 0xC0) == 0x80) --begin;
    if (!isBlank(text.substr(begin))) break;
    text = text.substr(0, begin);
  }
  return text;
}

}  // namespace zelvane::NotesText
