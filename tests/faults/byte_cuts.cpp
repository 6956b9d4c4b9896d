#include "tests/faults/byte_cuts.h"

#include "tests/faults/folder_check.h"
#include "tests/support/temporary_folder.h"

namespace zelvane::test {
namespace {

using Losses = std::vector<std::string>;

const std::string mainName = notesFolder + "/notes.json";
const std::string backupName = notesFolder + "/notes.bak.json";
const std::string logName = notesFolder + "/removed-notes.jsonl";
const std::string older = "s1::처음";
const std::string newer = "s1:제목:하나 s2::\"둘\"\n";

struct Disk {
  TemporaryFolder folder;
  explicit Disk(const FileTree& tree) { writeTree(folder.path(), tree); }
  std::string notes() const { return folder.path(notesFolder); }
};

Losses cutMain(const std::string& cut) {
  const Disk disk({{mainName, 'F' + cut}, {backupName, 'F' + fileWith(older)}});
  const Scenario scenario{
      .old = older, .now = older, .backup = older, .nextBackup = older, .damaged = cut};
  return lossesIn(disk.folder.path(), scenario, Expect::now);
}

Losses cutBackup(const std::string& cut) {
  const Disk disk({{mainName, 'F' + fileWith(newer)}, {backupName, 'F' + cut}});
  auto lost = lossesIn(disk.folder.path(), {.old = newer, .now = newer}, Expect::now);
  const auto backup = notesIn(disk.folder.read(backupName));
  if (backup != newer) lost.push_back("the next save left the backup as \"" + backup + '"');
  return lost;
}

/// Nothing can be read: both files stay as they are.
Losses cutBoth(const FileTree& tree) {
  const Disk disk(tree);
  NotesStore store(manualStore(disk.notes()));
  Losses lost;
  if (!store.problem()) lost.push_back("nothing was said");
  store.setMemo("s1", "새것");
  store.flush();
  const auto left = readTree(disk.folder.path());
  for (const auto& [name, content] : tree) {
    if (left.at(name) != content) lost.push_back(name + " was written over");
  }
  return lost;
}

/// The next line begins on a line of its own.
Losses cutLog(const std::string& cut) {
  const Disk disk({{mainName, 'F' + fileWith(newer)}, {logName, 'F' + cut}});
  {
    NotesStore store(manualStore(disk.notes()));
    store.setTitle("s1", std::nullopt);
  }
  const auto log = disk.folder.read(logName);
  auto lost = lossesInLog(cut, log);
  if (log.find("\"title\":\"제목\"}\n") == log.npos) lost.push_back("the title is not in the log");
  return lost;
}

}  // namespace

void cutEverywhere(const std::function<void(const std::string& what, const Losses& lost)>& report) {
  const auto file = fileWith(newer);
  for (std::size_t size = 0; size < file.size(); ++size) {
    const auto cut = file.substr(0, size);
    const auto at = " cut after byte " + std::to_string(size);
    report("main file" + at, cutMain(cut));
    report("backup" + at, cutBackup(cut));
    report("main file, no backup," + at, cutBoth({{mainName, 'F' + cut}}));
    report("both files" + at, cutBoth({{mainName, 'F' + cut}, {backupName, 'F' + cut}}));
  }
  const std::string log =
      "{\"at\":1.5,\"memo\":\"옛것\",\"sid\":\"s1\"}\n{\"at\":2.5,\"title\":\"잘\"}\n";
  for (std::size_t size = 0; size <= log.size(); ++size) {
    report("log cut after byte " + std::to_string(size), cutLog(log.substr(0, size)));
  }
}

}  // namespace zelvane::test
