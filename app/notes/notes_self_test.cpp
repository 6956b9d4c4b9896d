#include "app/notes/notes_self_test.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <ostream>
#include <sstream>
#include <unistd.h>

#include "core/json_file.h"
#include "core/localization.h"
#include "core/unicode.h"

#include "app/notes/notes_store.h"

namespace zelvane {
namespace {

namespace fs = std::filesystem;

constexpr auto readFromBackup =
    "메모 파일이 깨져서 백업에서 읽었어요. 깨진 파일은 따로 보관했어요 (%@).";
constexpr auto notSaved =
    "메모 파일을 읽지 못해서 원본을 그대로 두었어요. 지금 쓰는 메모는 저장되지 않아요 (%@).";

/// A notes folder of one scenario, and what its user does there.
class Folder {
 public:
  explicit Folder(std::string path) : path_(std::move(path)) {
    std::error_code ignored;
    fs::create_directories(path_, ignored);
  }

  std::unique_ptr<NotesStore> open() const {
    return std::make_unique<NotesStore>(NotesStore::Options{.dir = path_});
  }

  /// One run of the program that changes a memo.
  void saveMemo(const std::string& id, const std::optional<std::string>& memo) const {
    open()->setMemo(id, memo);
  }

  std::string read(const std::string& name) const {
    std::ostringstream bytes;
    bytes << std::ifstream(path_ + '/' + name, std::ios::binary).rdbuf();
    return bytes.str();
  }

  void write(const std::string& name, const std::string& bytes) const {
    std::ofstream(path_ + '/' + name, std::ios::binary | std::ios::trunc) << bytes;
  }

  /// Contents of the files whose names begin so.
  std::vector<std::string> filesNamed(const std::string& prefix) const {
    std::vector<std::string> contents;
    std::error_code failed;
    for (const auto& entry : fs::directory_iterator(path_, failed)) {
      const auto name = entry.path().filename().string();
      if (name.starts_with(prefix)) contents.push_back(read(name));
    }
    return contents;
  }

  /// The texts of one kind in the log of removed notes.
  std::vector<std::string> removed(const std::string& kind) const {
    std::vector<std::string> texts;
    std::istringstream log(read("removed-notes.jsonl"));
    for (std::string line; std::getline(log, line);) {
      const auto record = parseJson(line);
      if (const auto text = record ? get::str(*record, kind) : std::nullopt) texts.push_back(*text);
    }
    return texts;
  }

  /// The memo that a file of the folder holds for s1.
  std::optional<std::string> memoIn(const std::string& name) const {
    const auto notes = decodeNotes(read(name));
    if (!notes || !notes->contains("s1")) return std::nullopt;
    return notes->at("s1")->memo;
  }

  std::string told(const char* message) const { return LF(message, {path_}); }

 private:
  std::string path_;
};

using Texts = std::vector<std::string>;

bool startsEmpty(const Folder& folder) {
  const auto store = folder.open();
  return store->entry("s1").empty() && !store->problem();
}

bool savesAndReads(const Folder& folder) {
  {
    const auto store = folder.open();
    store->setTitle("s1", "  내 이름\n두줄");
    store->setMemo("s1", "다음엔 위젯 색 확인");
    store->flush();
  }
  const auto entry = folder.open()->entry("s1");
  return entry.title == "내 이름 두줄" && entry.memo == "다음엔 위젯 색 확인";
}

bool keepsBackup(const Folder& folder) {
  folder.saveMemo("s1", "처음");
  const auto before = folder.read("notes.json");
  folder.saveMemo("s1", "다음");
  return !before.empty() && folder.read("notes.bak.json") == before;
}

bool readsBackup(const Folder& folder) {
  folder.saveMemo("s1", "처음");
  folder.saveMemo("s1", "다음");
  folder.write("notes.json", "{깨짐");
  const auto store = folder.open();
  return store->entry("s1").memo == "처음" && store->problem() == folder.told(readFromBackup);
}

constexpr auto cutShort = R"({"v":1,"entries":{"s1":{"memo":"v3-newest")";

/// A main file that was cut in the middle, and a backup from before.
void damageNewest(const Folder& folder) {
  folder.saveMemo("s1", "v1");
  folder.saveMemo("s1", "v2");
  folder.write("notes.json", cutShort);
}

bool keepsDamaged(const Folder& folder) {
  damageNewest(folder);
  const auto store = folder.open();
  return folder.filesNamed("notes.corrupt-") == Texts{cutShort} &&
         folder.read("notes.json") == cutShort;
}

bool successClearsProblem(const Folder& folder) {
  damageNewest(folder);
  const auto store = folder.open();
  const bool warned = store->problem().has_value();
  store->setMemo("s1", "v4");
  store->flush();
  return warned && !store->problem() && folder.memoIn("notes.json") == "v4";
}

bool keepsDamagedOnce(const Folder& folder) {
  damageNewest(folder);
  for (int start = 0; start < 2; ++start) (void)folder.open();
  return folder.filesNamed("notes.corrupt-").size() == 1;
}

bool leavesBothDamaged(const Folder& folder) {
  const std::string damaged = "{깨짐";
  folder.write("notes.json", damaged);
  folder.write("notes.bak.json", damaged);
  const auto store = folder.open();
  const bool told = store->entry("s1").empty() && store->problem() == folder.told(notSaved);
  store->setMemo("s1", "쓴 것");
  store->flush();
  return told && folder.read("notes.json") == damaged && folder.read("notes.bak.json") == damaged;
}

bool quietQuitKeepsBackup(const Folder& folder) {
  folder.saveMemo("s1", "처음");
  folder.saveMemo("s1", "다음");
  folder.open()->flush();
  return folder.memoIn("notes.bak.json") == "처음" && folder.memoIn("notes.json") == "다음";
}

bool carriesNotes(const Folder& folder) {
  const auto store = folder.open();
  store->setTitle("s1", "이름");
  store->setMemo("s1", "메모");
  const bool carried = store->carry("s1", "s2");
  const auto from = store->entry("s1");
  const auto to = store->entry("s2");
  return carried && to.title == "이름" && to.memo == "메모" && from == to;
}

bool carryKeepsOthers(const Folder& folder) {
  const auto store = folder.open();
  store->setMemo("s1", "옛것");
  store->setMemo("s2", "새것");
  return !store->carry("s1", "s2") && store->entry("s2").memo == "새것";
}

bool emptyingRemoves(const Folder& folder) {
  const auto store = folder.open();
  store->setTitle("s1", "이름");
  store->setMemo("s1", "메모");
  store->flush();
  const bool there = folder.memoIn("notes.json").has_value();
  store->setTitle("s1", std::nullopt);
  store->setMemo("s1", " \n ");
  store->flush();
  const auto notes = decodeNotes(folder.read("notes.json"));
  return there && notes && !notes->contains("s1");
}

bool logsWhatWasDeleted(const Folder& folder) {
  const auto store = folder.open();
  const std::string original = "abc 내일 할 일";
  store->setTitle("s1", "이름");
  store->setMemo("s1", original);
  for (auto memo = scalars(original); !memo.empty(); memo.pop_back()) {
    store->setMemo("s1", utf8(memo));
  }
  store->setMemo("s1", "");
  store->memoEditEnded("s1", original);
  store->setTitle("s1", std::nullopt);
  store->flush();
  return folder.removed("memo") == Texts{original} && folder.removed("title") == Texts{"이름"};
}

bool logsWhatWasReplaced(const Folder& folder) {
  const auto store = folder.open();
  store->setMemo("s1", "이전");
  store->setMemo("s1", "다른 것");
  store->memoEditEnded("s1", "이전");
  store->flush();
  return folder.removed("memo") == Texts{"이전"};
}

struct Scenario {
  const char* title;
  bool (*passes)(const Folder& folder);
};

constexpr Scenario scenarios[] = {
    {"처음엔 비어 있고 문제 없음", startsEmpty},
    {"저장 후 다시 읽기 (제목은 한 줄로)", savesAndReads},
    {"쓰기 전 백업 생김", keepsBackup},
    {"본 파일이 깨지면 백업에서 읽고 알림", readsBackup},
    {"M1: 덮어쓰기 전에 깨진 본(최신 내용)을 보관", keepsDamaged},
    {"m1: 저장에 성공하면 경고가 사라짐", successClearsProblem},
    {"m4: 같은 깨진 파일은 켤 때마다 다시 보관하지 않음", keepsDamagedOnce},
    {"둘 다 깨지면 덮어쓰지 않고 보관, '저장 안 됨'을 알림", leavesBothDamaged},
    {"바뀐 것 없이 꺼도 백업은 직전 본(처음)을 유지", quietQuitKeepsBackup},
    {"대화 번호가 바뀌면 옮김 (원래 것도 남김)", carriesNotes},
    {"새 번호에 이미 있으면 덮지 않음", carryKeepsOthers},
    {"제목·메모를 비우면 항목 삭제", emptyingRemoves},
    {"Q3·N1: 한 글자씩 지워도 원래 메모 전체와 이름이 지운 기록에 남음", logsWhatWasDeleted},
    {"N1: 바꿔 쓰면 이전 메모가 기록에 남음", logsWhatWasReplaced},
};

}  // namespace

bool runNotesSelfTest(std::ostream& out, std::ostream& errors) {
  std::error_code failed;
  const auto temporary = fs::temp_directory_path(failed);
  auto root = (temporary / "zelvane-notes-XXXXXX").string();
  const bool made = !failed && mkdtemp(root.data());
  if (!made)
    errors << L("임시 폴더를 만들지 못해서 확인하지 못했어요. TMPDIR 을 봐 주세요.") << '\n';
  bool allPassed = true;
  int number = 0;
  for (const auto& [title, passes] : scenarios) {
    const bool passed = made && passes(Folder(root + '/' + std::to_string(++number)));
    out << (passed ? L("통과 ") : L("실패 ")) << L(title) << '\n';
    allPassed = allPassed && passed;
  }
  if (made) fs::remove_all(root, failed);
  return allPassed;
}

}  // namespace zelvane
