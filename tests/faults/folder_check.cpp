#include "tests/faults/folder_check.h"

#include <algorithm>
#include <sstream>

#include "core/json_file.h"

namespace zelvane::test {
namespace {

const std::string log = "removed-notes.jsonl";

std::string fileIn(const std::string& disk, const std::string& name) {
  return readFile(disk + '/' + notesFolder + '/' + name, largestNotesFile).value_or("");
}

bool isTemporary(const std::string& name) {
  return name.find(".sb-") != name.npos || name.ends_with(".tmp");
}

bool anyFile(const std::string& disk, const std::function<bool(const std::string& bytes)>& is) {
  const auto tree = readTree(disk);
  return std::any_of(tree.begin(), tree.end(), [&](const auto& file) {
    return file.second[0] == 'F' && !isTemporary(file.first) && is(file.second.substr(1));
  });
}

using Losses = std::vector<std::string>;

void checkBackup(const std::string& disk, const Scenario& scenario, Expect expect, Backup allowed,
                 Losses& lost) {
  const auto backup = notesIn(fileIn(disk, "notes.bak.json"));
  const bool isOld = expect == Expect::oldOrNow && backup == scenario.backup;
  const bool isNext = allowed == Backup::oldOrNext && backup == scenario.nextBackup;
  if (!scenario.backup.empty() && !isOld && !isNext)
    lost.push_back("the backup is \"" + backup + '"');
}

void checkFiles(const std::string& disk, const Scenario& scenario, Losses& lost) {
  const auto main = notesIn(fileIn(disk, "notes.json"));
  const bool wasGood = !scenario.damaged && !scenario.old.empty();
  if (wasGood && main != scenario.old && main != scenario.now) {
    lost.push_back("the main file was good and is \"" + main + '"');
  }
  for (const auto& word : scenario.words) {
    const auto has = [&](const auto& bytes) { return bytes.find(word) != bytes.npos; };
    if (!anyFile(disk, has)) lost.push_back(word + " is in no file");
  }
}

/// As after a restart.
void checkNotes(const std::string& disk, const Scenario& scenario, Expect expect, Losses& lost) {
  const auto options = manualStore(disk + '/' + notesFolder);
  std::string notes;
  {
    NotesStore store(options);
    notes = notesIn(store);
    const bool isOld = expect == Expect::oldOrNow && notes == scenario.old;
    if (!isOld && notes != scenario.now) lost.push_back("read are \"" + notes + '"');
    store.setMemo("s4", "다음");
    store.flush();
    if (store.problem()) lost.push_back("no save after it: " + *store.problem());
  }
  const auto expected = notes + (notes.empty() ? "" : " ") + "s4::다음";
  const auto next = notesIn(NotesStore(options));
  if (next != expected) lost.push_back("after the next save read are \"" + next + '"');
}

void checkDamaged(const std::string& disk, const Scenario& scenario, Losses& lost) {
  const auto is = [&](const auto& bytes) { return bytes == *scenario.damaged; };
  if (scenario.damaged && !anyFile(disk, is)) lost.push_back("the damaged file is gone");
}

}  // namespace

std::vector<std::string> lossesInLog(const std::string& before, const std::string& now) {
  if (!now.starts_with(before)) return {"the log's earlier lines are not what they were"};
  std::istringstream rest(now.substr(before.rfind('\n') + 1));
  std::vector<std::string> lines;
  for (std::string line; getline(rest, line);) lines.push_back(line);
  const bool wasCut = !before.empty() && !before.ends_with('\n');
  Losses lost;
  for (std::size_t i = wasCut ? 1 : 0; i + 1 < lines.size(); ++i) {
    const bool again = std::any_of(lines.begin() + static_cast<std::ptrdiff_t>(i) + 1, lines.end(),
                                   [&](const auto& line) { return line.starts_with(lines[i]); });
    if (!parseJson(lines[i]) && !again) lost.push_back("a line of the log is " + lines[i]);
  }
  return lost;
}

std::vector<std::string> lossesIn(const std::string& disk, const Scenario& scenario, Expect expect,
                                  Backup backup) {
  const auto logBefore = scenario.disk.find(notesFolder + '/' + log);
  auto lost = lossesInLog(logBefore == scenario.disk.end() ? "" : logBefore->second.substr(1),
                          fileIn(disk, log));
  checkBackup(disk, scenario, expect, backup, lost);
  checkFiles(disk, scenario, lost);
  checkDamaged(disk, scenario, lost);
  checkNotes(disk, scenario, expect, lost);
  checkDamaged(disk, scenario, lost);
  return lost;
}

}  // namespace zelvane::test
