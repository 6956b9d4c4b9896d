// Small transformations of text. Pure; texts are UTF-8.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "core/json_file.h"
#include "core/time.h"

namespace zelvane {

/// A JSON value (null pointer: absent) as a single line of at most `max` Unicode scalars, longer
/// ones cut and ended by "…". White space folds to single blanks; the number 0 shows as nothing.
std::string oneLine(const Json* value, std::size_t max);

/// The text with its line breaks folded into single blanks; blanks and tabs stay.
std::string oneLine(std::string_view text);

/// The text, or nothing when it is absent or has length zero.
std::optional<std::string> nonEmpty(std::optional<std::string> text);

/// The text without blanks and tabs (not line breaks) at both ends.
std::string trimmed(std::string_view text);

/// The text made safe as one word for a POSIX shell.
std::string shellQuote(std::string_view text);

/// The text as an AppleScript string literal, quotes included.
std::string appleScriptString(std::string_view text);

/// Whether the text can serve as the name of a file in a folder of ours: it comes from outside and
/// must not lead out of the folder, hide, or exceed what a file system takes.
bool isSafeFileName(std::string_view text);

/// Writes dates by a pattern of yyyy MM dd HH mm ss, in the current time zone, Gregorian and with
/// plain digits whatever the locale. Text in the pattern between single quotes stays as it is.
class PosixFormatter {
 public:
  explicit PosixFormatter(std::string pattern) : pattern_(std::move(pattern)) {}
  std::string string(Time time) const;

 private:
  std::string pattern_;
};

/// A formatter for the pattern.
PosixFormatter posixFormatter(std::string pattern);

}  // namespace zelvane
