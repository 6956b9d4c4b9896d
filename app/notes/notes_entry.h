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

/// Whether the notes of one session are copied to the one that replaced it: notes of its own stay.
inline bool mayCarry(const NotesEntry& from, const NotesEntry& to) {
  return !from.empty() && to.empty();
}

}  // namespace zelvane
