// Unicode facts about text: classes, cases, widths, repair. Pure; texts are UTF-8.
#pragma once

#include <string>
#include <string_view>

namespace zelvane {

/// Whether the bytes are UTF-8 throughout.
bool isUtf8(std::string_view bytes);
/// The text with every invalid UTF-8 sequence replaced by U+FFFD.
std::string repairedUtf8(std::string_view bytes);
/// Unicode scalars of a text, repaired as above; and back.
std::u32string scalars(std::string_view text);
std::string utf8(std::u32string_view scalars);

bool isWhitespace(char32_t scalar);    ///< blanks and line breaks of every kind
bool isLineBreak(char32_t scalar);     ///< U+000A to U+000D, U+0085, U+2028, U+2029
bool isAlphanumeric(char32_t scalar);  ///< letters, marks and numbers
bool isControl(char32_t scalar);       ///< what would move or colour a terminal's cursor

std::string lowerCased(std::string_view text);
/// First character in upper case, the rest as it is.
std::string firstUpperCased(std::string_view text);

/// Outside text as one harmless line to show: invalid UTF-8 repaired, controls and white space
/// folded into single blanks, marks that turn the reading direction dropped.
std::string printable(std::string_view text);

/// How many scalars the first user-perceived character takes; 0 for the empty text.
std::size_t firstCharacterLength(std::u32string_view text);
/// Columns that the text takes on a terminal: 2 for wide characters such as Hangul, 0 for marks.
int displayWidth(std::string_view text);
/// The text cut to at most `columns` columns, ended by "…" when something was cut.
std::string fitted(std::string_view text, int columns);

}  // namespace zelvane
