// The ledger of everything that a user typed: each text must be found in the notes file or in the
// log of removed notes, unless its own writer put another in its place knowingly.
#pragma once

#include <optional>
#include <set>
#include <string>
#include <tuple>

#include "core/json_file.h"

#include "app/notes/notes_store.h"
#include "tests/simulator/world.h"

namespace zelvane::test {

class NotesLedger {
 public:
  explicit NotesLedger(World& world) : world_(world) {}

  /// Types into one writer's notes, as an editor does, and notes what is owed from then on.
  void typeTitle(NotesStore& notes, const std::string& sid, const std::string& title);
  void typeMemo(NotesStore& notes, const std::string& sid, const std::string& memo);
  /// Types as a command does: a writer of its own that saves at once, or says that it could not.
  void typeByCommand(const std::string& sid, const char* kind, const std::string& text);
  /// A writer ends without a word: what it had no time to save cannot be owed.
  void writerKilled(double untilNow);

  /// The notes by session as they lie in the file, by its bytes; none when that is missing. Ends
  /// the life when it cannot be read by anyone.
  Json kept() const;
  /// Looks for all that is owed in what is kept, and in the log. Only to be called when nothing
  /// waits to be saved.
  void check(const Json& kept);

  std::uint64_t typed() const { return typed_; }
  /// When the last text was typed, since the machine was first started.
  Seconds lastTyped() const { return lastTyped_; }
  /// The same for one session.
  Seconds lastTypedAt(const std::string& sid) const;

 private:
  struct Owed {
    std::string sid;
    std::string kind;  ///< "title" or "memo"
    std::string text;
    auto operator<=>(const Owed&) const = default;
  };

  void owe(const std::string& sid, const char* kind, const std::string& text);
  void release(const std::string& sid, const char* kind, const std::string& text);
  const std::set<Owed>& logged();

  World& world_;
  std::map<Owed, Seconds> owed_;  ///< and since when
  std::set<Owed> logged_;         ///< what the log held when it was last read, up to here:
  std::size_t logRead_ = 0;
  std::uint64_t typed_ = 0;
  Seconds lastTyped_{0};
  std::map<std::string, Seconds> lastTypedAt_;
};

}  // namespace zelvane::test
