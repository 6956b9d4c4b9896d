// Brings together what was changed here and what another process wrote meanwhile. Pure.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "app/notes/notes_file.h"
#include "app/notes/removed_log.h"

namespace zelvane {

/// Notes changed here and not yet in the file; null where there are none.
struct NotesChange {
  NotesEntryPtr before;  ///< as the file had them when the change was made
  NotesEntryPtr after;
};
using NotesChanges = std::map<std::string, NotesChange>;

/// Notes by session id of which memory is to take note; null where they are gone.
using NotesNews = std::map<std::string, NotesEntryPtr>;

struct NotesMerge {
  NotesMap notes;                 ///< what the file is to hold
  NotesNews news;                 ///< where that differs from what memory holds
  std::vector<RemovedText> lost;  ///< texts that the file is not to hold, and no user took away
};

/// Merges our changes into the file's notes as they are now. `known` is what the file held when we
/// last looked: what differs from it in `theirs` is another's change, removals included. Titles and
/// memos are merged apart. Where both sides changed the same text, a text beats a removal, and of
/// two texts the one in the notes updated later wins. Lost is the other, and what is missing in
/// `theirs` without a later edit, as in an older copy that was put in the file's place.
NotesMerge mergeNotes(const NotesMap& known, NotesMap theirs, const NotesChanges& mine);

}  // namespace zelvane
