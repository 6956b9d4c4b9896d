// Claude Code's settings as JSON that can be written back without changing a value. Pure.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "core/json_file.h"

namespace zelvane {

/// Whether there is nothing but white space: what a writer leaves between emptying and filling.
bool isBlank(std::string_view bytes);

/// Whether some object names a member twice, also when one name is written with escapes. A parser
/// would keep only one of the two. Linear; makes no document.
bool hasDuplicateKeys(std::string_view bytes);

/// The settings behind the bytes; blank ones are empty settings. Numbers that no machine number
/// holds keep their text, as a binary value. Nothing when it is no JSON object, not UTF-8, or
/// nested deeper than 512.
std::optional<Json> parseSettings(std::string_view bytes);

/// The text of such settings: sorted, pretty-printed, one line feed at the end. Nothing when a
/// string in it is not UTF-8.
std::optional<std::string> settingsText(const Json& settings);

}  // namespace zelvane
