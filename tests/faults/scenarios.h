// The saves that are put through the faults, and what must be left of the notes after each.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "app/notes/notes_store.h"
#include "tests/faults/file_tree.h"

namespace zelvane::test {

/// Where the notes lie on the disk of a case.
inline const std::string notesFolder = "data/Zelvane";

/// A save. Notes are written "ID:TITLE:MEMO ID:TITLE:MEMO", by id.
struct Scenario {
  const char* name;
  FileTree disk;             ///< what lies there at first
  bool opensWithin = false;  ///< the faults begin before the store is opened, not after it
  std::function<void(const std::string& folder)> meanwhile;  ///< done by others, once it is open
  std::function<void(NotesStore& store)> edit;
  std::string old;                 ///< the notes that are to be read before the save
  std::string now;                 ///< and after it
  std::string backup;              ///< the notes in the backup before it; empty when there is none
  std::string nextBackup;          ///< and after it
  std::vector<std::string> words;  ///< must stay in some file, whichever
  std::optional<std::string> damaged;  ///< a main file that cannot be read: its bytes must stay
};

std::vector<Scenario> allScenarios();

/// A notes file with such notes.
std::string fileWith(const std::string& notes);
/// The notes in such a file; "damaged" when it cannot be read.
std::string notesIn(const std::string& file);
/// The notes of the store, those of the sessions s1 to s4.
std::string notesIn(const NotesStore& store);

/// A store that saves only when told to, and does not wait long for others.
NotesStore::Options manualStore(const std::string& folder);

}  // namespace zelvane::test
