#include "tests/simulator/notes_ledger.h"

#include <fstream>

namespace zelvane::test {

void NotesLedger::owe(const std::string& sid, const char* kind, const std::string& text) {
  ++typed_;
  lastTyped_ = lastTypedAt_[sid] = world_.time.uptime();
  if (!text.empty()) owed_[{sid, kind, text}] = lastTyped_;
}

Seconds NotesLedger::lastTypedAt(const std::string& sid) const {
  const auto found = lastTypedAt_.find(sid);
  return found == lastTypedAt_.end() ? Seconds(-1) : found->second;
}

void NotesLedger::release(const std::string& sid, const char* kind, const std::string& text) {
  owed_.erase({sid, kind, text});
}

void NotesLedger::typeTitle(NotesStore& notes, const std::string& sid, const std::string& title) {
  world_.journal.event("title of " + sid + ": " + title);
  const auto before = notes.entry(sid).title;
  // Who writes a new name over the old one has it no more; who takes a name away finds it again.
  if (before && !title.empty()) release(sid, "title", *before);
  notes.setTitle(sid, title.empty() ? std::nullopt : std::optional(title));
  owe(sid, "title", title);
}

void NotesLedger::typeMemo(NotesStore& notes, const std::string& sid, const std::string& memo) {
  world_.journal.event("memo of " + sid + ": " + memo);
  const auto before = notes.entry(sid).memo.value_or("");
  for (std::size_t length = 1; length < memo.size(); ++length) {
    notes.setMemo(sid, memo.substr(0, length));
  }
  notes.setMemo(sid, memo.empty() ? std::nullopt : std::optional(memo));
  notes.memoEditEnded(sid, before);
  owe(sid, "memo", memo);
}

void NotesLedger::typeByCommand(const std::string& sid, const char* kind, const std::string& text) {
  world_.journal.event(std::string("command: ") + kind + " of " + sid + ": " + text);
  const bool title = std::string(kind) == "title";
  const auto wanted = text.empty() ? std::nullopt : std::optional(text);
  NotesStore notes(
      {.dir = world_.machine.notesDir(), .clock = [this] { return world_.time.wall(); }});
  const auto before = notes.entry(sid);
  title ? notes.setTitle(sid, wanted) : notes.setMemo(sid, wanted);
  if (notes.flush()) return notes.setReadOnly();  // and the user knows
  if (title && before.title && wanted) release(sid, kind, *before.title);
  if (!title) notes.memoEditEnded(sid, before.memo.value_or(""));
  owe(sid, kind, text);
}

void NotesLedger::writerKilled(double untilNow) {
  std::erase_if(owed_, [&](const auto& entry) { return entry.second.count() > untilNow; });
}

Json NotesLedger::kept() const {
  const auto bytes = readFile(world_.machine.notesDir() + "/notes.json", std::size_t{1} << 30);
  if (!bytes) return Json::object();
  auto value = Json::parse(*bytes, nullptr, /*allow_exceptions=*/false);
  if (!value.is_object() || !value.contains("v") || !value.contains("entries") ||
      !value["entries"].is_object()) {
    world_.journal.broken("the notes file can always be read", bytes->substr(0, 400));
  }
  return std::move(value["entries"]);
}

/// Nothing is ever taken from the log: only what is new is read. A full disk may have cut a line.
const std::set<NotesLedger::Owed>& NotesLedger::logged() {
  std::ifstream log(world_.machine.notesDir() + "/removed-notes.jsonl", std::ios::binary);
  log.seekg(static_cast<std::streamoff>(logRead_));
  for (std::string line; std::getline(log, line) && !log.eof(); logRead_ += line.size() + 1) {
    const auto removed = Json::parse(line, nullptr, /*allow_exceptions=*/false);
    if (!removed.is_object()) continue;
    for (const char* kind : {"title", "memo"}) {
      if (removed.contains(kind)) logged_.insert({removed["sid"], kind, removed[kind]});
    }
  }
  return logged_;
}

void NotesLedger::check(const Json& kept) {
  for (auto owed = owed_.begin(); owed != owed_.end();) {
    const auto& [sid, kind, text] = owed->first;
    const auto entry = kept.find(sid);
    const bool inFile = entry != kept.end() && get::str(*entry, kind) == text;
    if (!inFile && !logged().contains(owed->first)) {
      world_.journal.broken("no text that a user typed is lost",
                            kind + " of " + sid + ": \"" + text + "\" is neither in " +
                                kept.value(sid, Json()).dump() + " nor in the log");
    }
    // What is in the log stays there.
    owed = inFile ? std::next(owed) : owed_.erase(owed);
  }
}

}  // namespace zelvane::test
