// Lays out text in the columns of a terminal. Pure; texts are UTF-8.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace zelvane::cli {

/// The text cut to at most `columns` columns at its beginning, which "…" then replaces.
std::string tailFitted(std::string_view text, int columns);

/// The text broken at blanks into lines of at most `columns` columns; a longer word is cut.
std::vector<std::string> wrapped(std::string_view text, int columns);

/// Shares out `room` columns: each gets what it wants as long as there is enough, and what is
/// scarce is divided evenly among those that want more.
std::vector<int> sharedOut(const std::vector<int>& wanted, int room);

/// Outside text of several lines made harmless: each line as by `printable`, but indented as it
/// was.
std::string printableLines(std::string_view text);

/// The lines, each with its line break.
std::string joined(const std::vector<std::string>& lines);

}  // namespace zelvane::cli
