// The notes file as text: one JSON object with the notes of every session. Pure.
#pragma once

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "app/notes/notes_entry.h"

namespace zelvane {

/// Notes never change once they are in a map: whoever edits puts new ones in their place, so that
/// a map can be shared between threads by copying pointers.
using NotesEntryPtr = std::shared_ptr<const NotesEntry>;
/// Notes by session id. Holds neither null pointers nor empty notes.
using NotesMap = std::map<std::string, NotesEntryPtr>;

/// {"v":1,"entries":{ID:{"title":…,"memo":…,"updated":SECONDS},…}}, compact; a title or memo that
/// is not there is left out.
std::string encodeNotes(const NotesMap& notes);

/// The notes in such a text. Unknown keys are ignored; nothing when the text is no JSON or one
/// required key is missing or of another type: then none of it can be trusted. Throws bad_alloc,
/// and nothing else: a text that memory does not hold must not count as damaged.
std::optional<NotesMap> decodeNotes(std::string_view text);

}  // namespace zelvane
