// The notes as the user sees them, and which of them the file does not have yet.
// Guarded by its owner's lock; nothing here takes longer than the notes concerned are many.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "app/notes/notes_merge.h"

namespace zelvane {

class NotesMemory {
 public:
  NotesMemory() = default;
  /// Begins with what the file holds.
  explicit NotesMemory(NotesMap notes) : notes_(std::move(notes)) {}

  /// The notes of the session; null when there are none.
  NotesEntryPtr find(const std::string& id) const;
  /// Puts the user's new notes in place; empty ones remove the session's notes. Returns the texts
  /// of another process that they replace: nobody here may ever have seen those.
  std::vector<RemovedText> edit(const std::string& id, NotesEntry entry);

  /// What the file does not have yet.
  const NotesChanges& changes() const { return changes_; }
  /// The file has these changes now. Notes that were edited again meanwhile stay changed.
  void saved(const NotesChanges& written);
  /// Takes over what another process wrote, except where the user changed the same notes: there
  /// the next save brings the two together.
  void take(const NotesNews& news);

 private:
  NotesMap notes_;
  NotesChanges changes_;
  std::map<std::string, NotesEntry> taken_;  ///< texts of others that were not edited here since
};

}  // namespace zelvane
