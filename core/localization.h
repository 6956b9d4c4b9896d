// The door that every text for people passes through. The Korean text is its own key.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace zelvane {

/// The text for the key from the string table; the key itself when it has no entry. Any thread.
std::string L(std::string_view key);

/// One argument of a format: for %d an integer, for %@ a text.
using FormatArgument = std::variant<std::int64_t, std::string>;

/// `L(key)` used as a format: %d takes the next argument as a number (with an optional 0 and width,
/// as in %02d), %@ takes it as it is, %% is a percent sign. A place without argument stays as is.
std::string LF(std::string_view key, const std::vector<FormatArgument>& arguments);

/// Replaces the string table. Called once at start-up, before other threads run.
void setStringTable(std::map<std::string, std::string, std::less<>> table);

}  // namespace zelvane
