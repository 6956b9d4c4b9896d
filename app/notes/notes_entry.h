// The user's own words about one session.
#pragma once

#include <optional>
#include <string>

namespace zelvane {

struct NotesEntry {
  std::optional<std::string> title;
  std::optional<std::string> memo;
  double updated = 0;  ///< last change, seconds since 1970

  bool operator==(const NotesEntry&) const = default;
  bool empty() const { return !title && !memo; }
};

}  // namespace zelvane
