// Two notes files, parted by a line feed: one that can be read is written back with the same
// notes, and a merge of both loses no text without saying so.
#include <algorithm>

#include "core/text.h"

#include "app/notes/notes_file.h"
#include "app/notes/notes_merge.h"
#include "app/notes/notes_text.h"
#include "app/notes/removed_log.h"
#include "tests/fuzz/fuzz_input.h"

using namespace zelvane;

namespace {

bool sameNotes(const NotesMap& a, const NotesMap& b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](const auto& one, const auto& other) {
    return one.first == other.first && *one.second == *other.second;
  });
}

bool isKept(const NotesMerge& merge, const std::string& id, const std::optional<std::string>& text,
            std::optional<std::string> NotesEntry::*member) {
  if (!text) return true;
  const auto found = merge.notes.find(id);
  if (found != merge.notes.end() && (*found->second).*member == text) return true;
  return std::any_of(merge.lost.begin(), merge.lost.end(), [&](const RemovedText& lost) {
    return lost.sid == id && lost.text == *text && holds(removedLine(lost), lost);
  });
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  std::string_view text = textOf(data, size);
  const auto mine = decodeNotes(takeLine(text));
  if (!mine) return 0;
  const auto again = decodeNotes(encodeNotes(*mine));
  require(again && sameNotes(*again, *mine));
  for (const auto& [id, notes] : *mine) {
    const auto title = NotesText::clean(notes->title);
    if (title) require(NotesText::clean(title) == trimmed(*title));
  }
  const auto theirs = decodeNotes(text);
  if (!theirs) return 0;
  NotesChanges changes;
  for (const auto& [id, notes] : *mine) changes[id] = {nullptr, notes};
  const auto merge = mergeNotes({}, *theirs, changes);
  for (const NotesMap& side : {*mine, *theirs}) {
    for (const auto& [id, notes] : side) {
      require(isKept(merge, id, notes->title, &NotesEntry::title));
      require(isKept(merge, id, notes->memo, &NotesEntry::memo));
    }
  }
  return 0;
}
