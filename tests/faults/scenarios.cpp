#include "tests/faults/scenarios.h"

#include <filesystem>
#include <sstream>

namespace zelvane::test {
namespace {

constexpr double late = 4e9;

std::optional<std::string> textOr(const std::string& text) {
  return text.empty() ? std::nullopt : std::optional(text);
}

void show(std::string& all, const std::string& id, const NotesEntry& entry) {
  if (entry.empty()) return;
  all += (all.empty() ? "" : " ") + id + ':' + entry.title.value_or("") + ':' +
         entry.memo.value_or("");
}

std::string in(const std::string& name) { return notesFolder + '/' + name; }

FileTree files(const std::string& main, const std::string& backup) {
  return {{in("notes.json"), 'F' + main}, {in("notes.bak.json"), 'F' + backup}};
}

const std::string first = "s1::처음";
const std::string second = "s1::하나 s2:이름:둘";
const std::string third = "s1:제목:셋 s2:이름:둘";
const std::string cut = fileWith("s1::가장새것").substr(0, 40);

void editFirst(NotesStore& store) {
  store.setMemo("s1", "셋");
  store.setTitle("s1", "제목");
}

Scenario firstSave() { return {.name = "first save", .edit = editFirst, .now = "s1:제목:셋"}; }

Scenario laterSave(const char* name) {
  return {.name = name,
          .disk = files(fileWith(second), fileWith(first)),
          .edit = editFirst,
          .old = second,
          .now = third,
          .backup = first,
          .nextBackup = second};
}

Scenario openAndSave() {
  auto save = laterSave("open, then save");
  save.opensWithin = true;
  save.disk[in("notes.bak.tmp")] = "F{\"v\"";
  save.disk[in("notes.json.sb-1-0")] = "F{\"v\"";
  return save;
}

Scenario throughLink() {
  auto save = laterSave("save through a link");
  save.disk["data/mine.json"] = save.disk[in("notes.json")];
  save.disk[in("notes.json")] = "L../mine.json";
  return save;
}

Scenario damagedBefore() {
  return {.name = "open a damaged file, save",
          .disk = files(cut, fileWith(second)),
          .opensWithin = true,
          .edit = editFirst,
          .old = second,
          .now = third,
          .backup = second,
          .nextBackup = second,
          .damaged = cut};
}

Scenario damagedMeanwhile() {
  auto save = laterSave("damaged while open");
  save.meanwhile = [](const std::string& folder) {
    std::filesystem::resize_file(folder + "/notes.json", 40);
  };
  save.damaged = fileWith(second).substr(0, 40);
  save.old = save.nextBackup = first;  // the other notes are in memory, and in the damaged file
  return save;
}

/// Of one memo both have changed, the other's was typed earlier and goes into the log.
Scenario merge() {
  auto save = laterSave("merge another's change");
  save.meanwhile = [](const std::string& folder) {
    NotesStore other(manualStore(folder));
    other.setMemo("s1", "남의하나");
    other.setMemo("s3", "남의셋");
  };
  save.old = "s1::남의하나 s2:이름:둘 s3::남의셋";
  save.now = third + " s3::남의셋";
  save.backup = second;
  save.nextBackup = save.old;
  save.words = {"남의하나", "남의셋"};
  return save;
}

/// The log ends in the middle of a line, as after a crash.
Scenario removal() {
  auto save = laterSave("remove, with a log");
  save.disk[in("removed-notes.jsonl")] =
      "F{\"at\":1.5,\"memo\":\"옛것\",\"sid\":\"s1\"}\n{\"at\":2.5,\"memo\":\"잘";
  save.edit = [](NotesStore& store) {
    store.setMemo("s1", std::nullopt);
    store.memoEditEnded("s1", "하나");
    store.setTitle("s2", std::nullopt);
  };
  save.now = "s2::둘";
  save.words = {"하나", "이름", "옛것"};
  return save;
}

Scenario firstRemoval() {
  auto save = removal();
  save.name = "remove, no log yet";
  save.disk.erase(in("removed-notes.jsonl"));
  save.words.pop_back();
  return save;
}

}  // namespace

std::vector<Scenario> allScenarios() {
  return {firstSave(),     laterSave("later save"), openAndSave(), throughLink(),
          damagedBefore(), damagedMeanwhile(),      merge(),       removal(),
          firstRemoval()};
}

std::string fileWith(const std::string& notes) {
  NotesMap map;
  std::istringstream rest(notes);
  for (std::string id, title, memo; getline(rest, id, ':');) {
    getline(rest, title, ':');
    getline(rest, memo, ' ');
    map[id] = std::make_shared<NotesEntry>(NotesEntry{textOr(title), textOr(memo), 1});
  }
  return encodeNotes(map);
}

std::string notesIn(const std::string& file) {
  const auto notes = decodeNotes(file);
  if (!notes) return "damaged";
  std::string all;
  for (const auto& [id, entry] : *notes) show(all, id, *entry);
  return all;
}

std::string notesIn(const NotesStore& store) {
  std::string all;
  for (const std::string id : {"s1", "s2", "s3", "s4"}) show(all, id, store.entry(id));
  return all;
}

NotesStore::Options manualStore(const std::string& folder) {
  return {.dir = folder,
          .saveDelay = Seconds(late),
          .retryDelay = Seconds(late),
          .lockPatience = Seconds(0.02)};
}

}  // namespace zelvane::test
