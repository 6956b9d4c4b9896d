#include "app/notes/notes_memory.h"

#include <utility>

namespace zelvane {
namespace {

using Text = std::optional<std::string>;

const NotesEntry nothing;

/// Forgets a taken text once the user's own stands in its place; returns it then.
Text replaced(Text& taken, const Text& now) {
  if (!taken || taken == now) return std::nullopt;
  return std::exchange(taken, std::nullopt);
}

}  // namespace

NotesEntryPtr NotesMemory::find(const std::string& id) const {
  const auto found = notes_.find(id);
  return found == notes_.end() ? nullptr : found->second;
}

std::vector<RemovedText> NotesMemory::edit(const std::string& id, NotesEntry entry) {
  std::vector<RemovedText> removed;
  if (const auto found = taken_.find(id); found != taken_.end()) {
    auto& taken = found->second;
    if (auto title = replaced(taken.title, entry.title)) {
      removed.push_back({id, RemovedText::Kind::title, std::move(*title), entry.updated});
    }
    if (auto memo = replaced(taken.memo, entry.memo)) {
      removed.push_back({id, RemovedText::Kind::memo, std::move(*memo), entry.updated});
    }
    if (taken.empty()) taken_.erase(found);
  }
  auto& change = changes_.try_emplace(id, NotesChange{find(id), nullptr}).first->second;
  if (entry.empty()) {
    change.after = nullptr;
    notes_.erase(id);
  } else {
    change.after = notes_[id] = std::make_shared<NotesEntry>(std::move(entry));
  }
  return removed;
}

void NotesMemory::saved(const NotesChanges& written) {
  for (const auto& [id, change] : written) {
    const auto found = changes_.find(id);
    if (found == changes_.end()) continue;
    if (found->second.after == change.after) {
      changes_.erase(found);
    } else {
      found->second.before = change.after;
    }
  }
}

void NotesMemory::take(const NotesNews& news) {
  for (const auto& [id, entry] : news) {
    if (changes_.contains(id)) continue;
    const auto old = find(id);
    const NotesEntry& before = old ? *old : nothing;
    auto& taken = taken_[id];
    if (entry && entry->title != before.title) taken.title = entry->title;
    if (entry && entry->memo != before.memo) taken.memo = entry->memo;
    if (!entry || taken.empty()) taken_.erase(id);
    if (entry) {
      notes_[id] = entry;
    } else {
      notes_.erase(id);
    }
  }
}

}  // namespace zelvane
