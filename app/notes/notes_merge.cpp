#include "app/notes/notes_merge.h"

#include <algorithm>

namespace zelvane {
namespace {

using Text = std::optional<std::string>;

NotesEntry valueOf(const NotesEntryPtr& entry) { return entry ? *entry : NotesEntry{}; }

bool same(const NotesEntryPtr& one, const NotesEntryPtr& other) {
  return one == other || (one && other && *one == *other);
}

NotesEntryPtr find(const NotesMap& notes, const std::string& id) {
  const auto found = notes.find(id);
  return found == notes.end() ? nullptr : found->second;
}

void put(NotesMap& notes, const std::string& id, const NotesEntryPtr& entry) {
  if (entry) {
    notes[id] = entry;
  } else {
    notes.erase(id);
  }
}

/// One text of the notes of one session, changed on both sides or on one.
struct TextMerge {
  Text result;
  Text lost;
};

TextMerge mergeText(const Text& before, const Text& mine, const Text& theirs, bool mineIsLater) {
  if (mine == theirs || theirs == before) return {mine, {}};
  if (mine == before) return {theirs, {}};
  if (!mine || !theirs) return {mine ? mine : theirs, {}};
  return mineIsLater ? TextMerge{mine, theirs} : TextMerge{theirs, mine};
}

NotesEntryPtr mergeEntry(const std::string& id, const NotesChange& change,
                         const NotesEntryPtr& theirEntry, std::vector<RemovedText>& lost) {
  if (same(change.before, theirEntry)) return change.after;
  const auto before = valueOf(change.before);
  const auto mine = valueOf(change.after);
  const auto theirs = valueOf(theirEntry);
  const bool mineIsLater = mine.updated >= theirs.updated;
  const auto title = mergeText(before.title, mine.title, theirs.title, mineIsLater);
  const auto memo = mergeText(before.memo, mine.memo, theirs.memo, mineIsLater);
  const NotesEntry merged{title.result, memo.result, std::max(mine.updated, theirs.updated)};
  if (title.lost) lost.push_back({id, RemovedText::Kind::title, *title.lost, merged.updated});
  if (memo.lost) lost.push_back({id, RemovedText::Kind::memo, *memo.lost, merged.updated});
  return merged.empty() ? nullptr : std::make_shared<NotesEntry>(merged);
}

/// Texts that we did not touch, that are gone or another's now, and that no edit accounts for: an
/// edit makes the notes later, and who made it logged what it removed. Of notes that are gone
/// altogether nothing tells.
void addDropped(const std::string& id, const NotesChange& change, const NotesEntryPtr& theirs,
                const NotesEntryPtr& merged, std::vector<RemovedText>& lost) {
  const auto before = valueOf(change.before);
  const auto mine = valueOf(change.after);
  const auto result = valueOf(merged);
  if (theirs && theirs->updated >= before.updated) return;
  const auto dropped = [](const Text& old, const Text& ours, const Text& now) {
    return old && ours == old && now != old;
  };
  if (dropped(before.title, mine.title, result.title)) {
    lost.push_back({id, RemovedText::Kind::title, *before.title, before.updated});
  }
  if (dropped(before.memo, mine.memo, result.memo)) {
    lost.push_back({id, RemovedText::Kind::memo, *before.memo, before.updated});
  }
}

/// What the other changed, removed or added.
NotesNews difference(const NotesMap& known, const NotesMap& theirs) {
  NotesNews news;
  for (const auto& [id, entry] : known) {
    if (!theirs.contains(id)) news[id] = nullptr;
  }
  for (const auto& [id, entry] : theirs) {
    if (!same(entry, find(known, id))) news[id] = entry;
  }
  return news;
}

}  // namespace

NotesMerge mergeNotes(const NotesMap& known, NotesMap theirs, const NotesChanges& mine) {
  NotesMerge merge{.news = difference(known, theirs)};
  for (const auto& [id, entry] : merge.news) {
    const auto before = find(known, id);
    if (!mine.contains(id)) addDropped(id, {before, before}, entry, entry, merge.lost);
  }
  for (const auto& [id, change] : mine) {
    const auto their = find(theirs, id);
    const auto merged = mergeEntry(id, change, their, merge.lost);
    addDropped(id, change, their, merged, merge.lost);
    put(theirs, id, merged);
    merge.news.erase(id);
    if (!same(merged, change.after)) merge.news[id] = merged;
  }
  merge.notes = std::move(theirs);
  return merge;
}

}  // namespace zelvane
