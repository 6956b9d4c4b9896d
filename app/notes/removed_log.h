// Lines of the log of removed notes: what the user deleted or overwrote, to be found again by hand.
// Pure.
#pragma once

#include <string>
#include <string_view>

namespace zelvane {

/// A title or memo that is gone.
struct RemovedText {
  enum class Kind { title, memo };

  std::string sid;
  Kind kind = Kind::memo;
  std::string text;
  double at = 0;  ///< seconds since 1970

  bool operator==(const RemovedText&) const = default;
};

/// Its line: a compact JSON object with the keys "sid", "title" or "memo", and "at"; ends with a
/// line feed.
std::string removedLine(const RemovedText& removed);

/// Whether a log with these bytes has such a line, of whatever time.
bool holds(std::string_view log, const RemovedText& removed);

}  // namespace zelvane
