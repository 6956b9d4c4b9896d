// The rules for what a user types as a title or memo. Pure; texts are UTF-8.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace zelvane::NotesText {

/// A title as it is kept: one line without blanks at its ends, then cut to 80 characters as people
/// count them; nothing when nothing is left.
std::optional<std::string> clean(const std::optional<std::string>& title);

/// A memo as it is kept: exactly as typed; nothing when it holds only white space.
std::optional<std::string> kept(std::optional<std::string> memo);

/// The text without white space and line breaks at both ends.
std::string_view stripped(std::string_view text);

}  // namespace zelvane::NotesText
