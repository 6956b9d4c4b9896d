// `zelvane title` and `zelvane memo`: the user's own words about a row.
#pragma once

#include <optional>
#include <string>

#include "cli/exit_code.h"

namespace zelvane::cli {

enum class Note { title, memo };

/// Gives the row a new title or memo ("-": from standard input, empty: none), or prints the present
/// one when no text is given.
ExitCode changeNote(Note note, const std::string& row, const std::optional<std::string>& text);

}  // namespace zelvane::cli
