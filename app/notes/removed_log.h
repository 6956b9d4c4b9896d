// Lines of the log of removed notes: what the user deleted or overwrote, to be found again by hand.
// Pure.
#pragma once

#include <string>

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

}  // namespace zelvane
