#include <gmock/gmock.h>
#include <sstream>
#include <sys/wait.h>
#include <unistd.h>

#include "core/json_file.h"

#include "app/notes/notes_store.h"
#include "tests/support/event_counter.h"
#include "tests/support/hooked_notes_disk.h"
#include "tests/support/manual_notes.h"
#include "tests/support/temporary_folder.h"

namespace zelvane {
namespace {

using test::EventCounter;
using test::HookedNotesDisk;
using test::manual;
using test::TemporaryFolder;

/// Runs each part in a process of its own, all at once; true when all ended well.
bool runAtOnce(const std::vector<std::function<bool()>>& parts) {
  std::array<int, 2> gate{};
  if (pipe(gate.data()) != 0) return false;
  std::vector<pid_t> children;
  for (const auto& part : parts) {
    const pid_t child = fork();
    if (child == 0) {
      close(gate[1]);
      char byte = 0;
      (void)!read(gate[0], &byte, 1);  // returns when the parent opens the gate by closing it
      _exit(part() ? 0 : 1);
    }
    children.push_back(child);
  }
  close(gate[0]);
  close(gate[1]);
  bool well = true;
  for (const pid_t child : children) {
    int status = 0;
    waitpid(child, &status, 0);
    well = well && WIFEXITED(status) && WEXITSTATUS(status) == 0;
  }
  return well;
}

constexpr int rounds = 60;

/// A column: one store for all its life, which changes its own notes, a memo beside the other's
/// title, and removes what it made before. It only learns of the other by saving.
bool runColumn(const TemporaryFolder& folder) {
  NotesStore store(manual(folder));
  for (int i = 0; i < rounds; ++i) {
    store.setMemo("column-" + std::to_string(i), "memo");
    store.setMemo("shared", "memo " + std::to_string(i));
    if (i > 0) store.setMemo("column-" + std::to_string(i - 1), std::nullopt);
    store.flush();
    if (store.problem()) return false;
  }
  return true;
}

/// Command after command: each a store that lives for one change.
bool runCommands(const TemporaryFolder& folder) {
  for (int i = 0; i < rounds; ++i) {
    NotesStore store(manual(folder));
    store.setTitle("command-" + std::to_string(i), "title");
    store.setTitle("shared", "title " + std::to_string(i));
    if (i > 0) store.setTitle("command-" + std::to_string(i - 1), std::nullopt);
    store.flush();
    if (store.problem()) return false;
  }
  return true;
}

TEST(TwoWriters, LoseNothingOfEachOther) {
  const TemporaryFolder folder;
  ASSERT_TRUE(runAtOnce({[&] { return runColumn(folder); }, [&] { return runCommands(folder); }}));
  const auto notes = decodeNotes(folder.read("notes.json"));
  ASSERT_TRUE(notes);
  std::vector<std::string> ids;
  for (const auto& [id, entry] : *notes) ids.push_back(id);
  const auto last = std::to_string(rounds - 1);
  EXPECT_THAT(ids, testing::ElementsAre("column-" + last, "command-" + last, "shared"));
  EXPECT_EQ(notes->at("shared")->memo, "memo " + last);
  EXPECT_EQ(notes->at("shared")->title, "title " + last);
}

TEST(TwoWriters, ShareTheLogLineByLine) {
  const TemporaryFolder folder;
  const auto removeTitles = [&] {
    NotesStore store(manual(folder));
    for (int i = 0; i < rounds; ++i) {
      store.setTitle("s" + std::to_string(getpid()), std::string(70, 'x'));
      store.setTitle("s" + std::to_string(getpid()), std::nullopt);
    }
    store.flush();
    return true;
  };
  ASSERT_TRUE(runAtOnce({removeTitles, removeTitles, removeTitles}));
  std::istringstream log(folder.read("removed-notes.jsonl"));
  int lines = 0;
  for (std::string line; std::getline(log, line); ++lines) ASSERT_TRUE(parseJson(line)) << line;
  EXPECT_EQ(lines, 3 * rounds);
}

TEST(TwoWriters, OfOneMemoKeepTheLaterAndLogTheOther) {
  const TemporaryFolder folder;
  auto early = manual(folder);
  early.clock = [] { return timeAt(10); };
  auto late = manual(folder);
  late.clock = [] { return timeAt(20); };
  NotesStore column(late);
  NotesStore command(early);
  column.setMemo("s1", "나중");
  command.setMemo("s1", "먼저");
  command.flush();
  column.flush();
  EXPECT_TRUE(command.reloadIfChanged());
  EXPECT_EQ(command.entry("s1").memo, "나중");
  EXPECT_EQ(folder.read("removed-notes.jsonl"), "{\"at\":20.0,\"memo\":\"먼저\",\"sid\":\"s1\"}\n");
}

TEST(TwoWriters, LearnOfEachOtherBySaving) {
  const TemporaryFolder folder;
  NotesStore column(manual(folder));
  NotesStore command(manual(folder));
  command.setTitle("s1", "이름");
  command.setMemo("s2", "둘");
  command.flush();
  column.setMemo("s1", "메모");
  column.flush();
  EXPECT_EQ(column.entry("s1").title, "이름");
  EXPECT_EQ(column.entry("s1").memo, "메모");
  EXPECT_EQ(column.entry("s2").memo, "둘");
  // What is taken over like that is not taken for a change of one's own later.
  command.reloadIfChanged();
  command.setMemo("s2", std::nullopt);
  command.setTitle("s1", "새 이름");
  command.flush();
  column.setMemo("s3", "셋");
  column.flush();
  EXPECT_EQ(column.entry("s2"), NotesEntry{});
  EXPECT_EQ(column.entry("s1").title, "새 이름");
}

/// The disk of a writer that hangs at its last step until it is let go.
struct HungDisk {
  EventCounter hangs, letGo;
  std::shared_ptr<NotesDisk> disk =
      std::make_shared<HookedNotesDisk>([this](const auto& call, const auto& path) {
        if (call == "rename" && path.ends_with("notes.json")) {
          hangs.add();
          letGo.waitFor(1);
        }
        return std::error_code();
      });
};

TEST(TwoWriters, AHungOneCostsTheOtherNothingOnceItGoesOn) {
  const TemporaryFolder folder;
  NotesStore(manual(folder)).setMemo("s0", "처음");
  HungDisk hung;
  auto slow = manual(folder);
  slow.disk = hung.disk;
  slow.saveDelay = Seconds(0);
  NotesStore first(slow);
  first.setMemo("s1", "먼저");
  ASSERT_TRUE(hung.hangs.waitFor(1));

  auto quick = manual(folder);
  quick.lockPatience = Seconds(0.05);
  NotesStore second(quick);
  second.setMemo("s2", "나중");
  second.flush();
  EXPECT_EQ(
      second.problem(),
      "메모를 저장하지 못했어요. 5초 뒤 다시 시도해요 (다른 프로그램이 메모를 쓰는 중이에요)");
  EXPECT_EQ(second.entry("s2").memo, "나중");

  hung.letGo.add();
  first.flush();
  second.flush();
  EXPECT_FALSE(first.problem());
  EXPECT_FALSE(second.problem());
  const NotesStore left(manual(folder));
  EXPECT_EQ(left.entry("s0").memo, "처음");
  EXPECT_EQ(left.entry("s1").memo, "먼저");
  EXPECT_EQ(left.entry("s2").memo, "나중");
}

TEST(TwoWriters, OneThatEndsWithoutATurnLeavesItsWordsInTheLog) {
  const TemporaryFolder folder;
  auto options = manual(folder);
  options.clock = [] { return timeAt(5.5); };
  options.lockPatience = Seconds(0.05);
  const FileLock::Scope hung(folder.path("notes.json.lock"), FileLock::Wait::no);
  ASSERT_TRUE(hung);
  NotesStore(options).setMemo("s1", "하나");
  EXPECT_EQ(folder.read("removed-notes.jsonl"), "{\"at\":5.5,\"memo\":\"하나\",\"sid\":\"s1\"}\n");
}

TEST(TwoWriters, WithoutALockFileNothingIsWritten) {
  const TemporaryFolder folder;
  NotesStore store(manual(folder));
  std::filesystem::create_directory(folder.path("notes.json.lock"));
  store.setMemo("s1", "하나");
  store.flush();
  EXPECT_TRUE(store.problem());
  EXPECT_FALSE(std::filesystem::exists(folder.path("notes.json")));
  std::filesystem::remove(folder.path("notes.json.lock"));
  store.flush();
  EXPECT_FALSE(store.problem());
  EXPECT_EQ(NotesStore(manual(folder)).entry("s1").memo, "하나");
}

/// A text editor or a sync tool replaces the file whenever a save begins, while it makes its
/// backup.
TEST(TwoWriters, OneThatTakesNoTurnsIsMergedAllTheSame) {
  const TemporaryFolder folder;
  for (const std::string moment : {"notes.json.sb-", "notes.bak.tmp"}) {
    NotesStore(manual(folder)).setMemo("s1", "하나");
    int times = 1;
    auto options = manual(folder);
    options.disk = std::make_shared<HookedNotesDisk>([&](const auto& call, const auto& path) {
      if (call != "create" || path.find(moment) == path.npos || times-- <= 0)
        return std::error_code();
      const auto theirs = R"({"v":1,"entries":{"s2":{"memo":"남의 것","updated":1}}})";
      std::filesystem::rename(folder.write("theirs", theirs), folder.path("notes.json"));
      return std::error_code();
    });
    NotesStore store(options);
    store.setTitle("s1", "이름");
    store.flush();
    EXPECT_FALSE(store.problem()) << moment;
    const NotesStore left(manual(folder));
    EXPECT_EQ(left.entry("s1").title, "이름") << moment;
    EXPECT_EQ(left.entry("s2").memo, "남의 것") << moment;
    // Who replaces it each time is not written over either.
    times = 1000;
    store.setTitle("s1", "다음");
    store.flush();
    EXPECT_TRUE(store.problem()) << moment;
    EXPECT_EQ(NotesStore(manual(folder)).entry("s1").title, std::nullopt) << moment;
    times = 0;
  }
}

}  // namespace
}  // namespace zelvane
