#include "app/notes/notes_store.h"

#include <atomic>
#include <gmock/gmock.h>
#include <sstream>

#include "core/text.h"

#include "app/notes/notes_self_test.h"
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
using testing::HasSubstr;

constexpr Seconds soon(0.001);

/// The main file as a fresh store reads it.
NotesEntry onDisk(const TemporaryFolder& folder, const std::string& id) {
  return NotesStore({.dir = folder.path(), .readOnly = true}).entry(id);
}

TEST(NotesSelfTest, PassesEveryScenario) {
  std::ostringstream out;
  std::ostringstream errors;
  EXPECT_TRUE(runNotesSelfTest(out, errors)) << out.str();
  EXPECT_EQ(errors.str(), "");
  EXPECT_THAT(out.str(), testing::StartsWith("통과 처음엔 비어 있고 문제 없음\n"));
  EXPECT_THAT(out.str(), testing::Not(HasSubstr("실패")));
}

TEST(NotesStore, StampsChangesAndCountsEmptiedNotesAsNone) {
  const TemporaryFolder folder;
  auto options = manual(folder);
  options.clock = [] { return timeAt(1731650000.5); };
  NotesStore store(options);
  store.setMemo("s1", " 메모 ");
  EXPECT_EQ(store.entry("s1"), (NotesEntry{std::nullopt, " 메모 ", 1731650000.5}));
  store.setMemo("s1", "\n");
  EXPECT_EQ(store.entry("s1"), NotesEntry{});
  store.setTitle("s2", "이름");
  store.flush();
  EXPECT_EQ(folder.read("notes.json"),
            R"({"v":1,"entries":{"s2":{"title":"이름","updated":1731650000.5}}})");
}

TEST(NotesStore, LogsWhatTheUserTookAway) {
  struct Case {
    const char* what;
    std::function<void(NotesStore&)> act;
    std::string log;
  };
  const std::vector<Case> cases{
      {"title replaced", [](auto& s) { s.setTitle("s1", "새 이름"); }, ""},
      {"title removed", [](auto& s) { s.setTitle("s1", std::nullopt); },
       "{\"at\":5.5,\"sid\":\"s1\",\"title\":\"이름\"}\n"},
      {"title blanked", [](auto& s) { s.setTitle("s1", " \n"); },
       "{\"at\":5.5,\"sid\":\"s1\",\"title\":\"이름\"}\n"},
      {"memo edit not ended", [](auto& s) { s.setMemo("s1", ""); }, ""},
      {"only white space changed",
       [](auto& s) {
         s.setMemo("s1", "\n메모 ");
         s.memoEditEnded("s1", "메모");
       },
       ""},
      {"began empty", [](auto& s) { s.memoEditEnded("s1", " \n"); }, ""},
      {"rewritten; the original to the byte",
       [](auto& s) {
         s.setMemo("s1", "다른 것");
         s.memoEditEnded("s1", " 메모\n");
       },
       "{\"at\":5.5,\"memo\":\" 메모\\n\",\"sid\":\"s1\"}\n"},
      {"read-only",
       [](auto& s) {
         s.setReadOnly();
         s.setTitle("s1", std::nullopt);
         s.memoEditEnded("s1", "x");
       },
       ""},
  };
  for (const auto& [what, act, log] : cases) {
    const TemporaryFolder folder;
    auto options = manual(folder);
    options.clock = [] { return timeAt(5.5); };
    NotesStore store(options);
    store.setTitle("s1", "이름");
    store.setMemo("s1", "메모");
    act(store);
    store.flush();
    EXPECT_EQ(folder.read("removed-notes.jsonl"), log) << what;
  }
}

TEST(NotesStore, FoldsABurstIntoOneSave) {
  const TemporaryFolder folder;
  EventCounter saves;
  auto options = manual(folder);
  options.saveDelay = Seconds(0.05);
  NotesStore store(options);
  // Every save clears this problem, so the observer counts saves.
  store.onProblem([&](const auto& problem) {
    if (!problem) saves.add();
  });
  store.setProblem("!");
  for (int i = 0; i < 100; ++i) store.setMemo("s1", std::to_string(i));
  ASSERT_TRUE(saves.waitFor(1));
  EXPECT_EQ(onDisk(folder, "s1").memo, "99");
  // One save: there was never a main file to make a backup of.
  EXPECT_EQ(folder.read("notes.bak.json"), "");
}

TEST(NotesStore, ReportsAProblemOnlyWhenItChanges) {
  const TemporaryFolder folder;
  NotesStore store(manual(folder));
  std::vector<std::optional<std::string>> told;
  store.onProblem([&](const auto& problem) { told.push_back(problem); });
  store.setProblem(std::nullopt);
  store.setProblem("가");
  store.setProblem("가");
  store.setProblem(std::nullopt);
  EXPECT_EQ(told, (std::vector<std::optional<std::string>>{"가", std::nullopt}));
}

TEST(NotesStore, WritesNothingWhenReadOnly) {
  const TemporaryFolder folder;
  folder.write("notes.json", "{");
  folder.write("notes.bak.json", R"({"v":1,"entries":{"s1":{"memo":"m","updated":1}}})");
  auto options = manual(folder);
  options.readOnly = true;
  {
    NotesStore store(options);
    EXPECT_EQ(store.entry("s1").memo, "m");
    EXPECT_TRUE(store.problem());
    store.setMemo("s1", "n");
    EXPECT_EQ(store.entry("s1").memo, "n");
  }
  std::vector<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(folder.path())) {
    names.push_back(entry.path().filename());
  }
  EXPECT_THAT(names, testing::UnorderedElementsAre("notes.json", "notes.bak.json"));
}

TEST(NotesStore, NoticesWhatAnotherWrote) {
  const TemporaryFolder folder;
  NotesStore column(manual(folder));
  NotesStore command(manual(folder));
  EXPECT_FALSE(column.reloadIfChanged());
  command.setTitle("s1", "명령으로");
  command.setMemo("s2", "둘");
  command.flush();
  column.setMemo("s3", "저장 전");
  EXPECT_TRUE(column.reloadIfChanged());
  EXPECT_FALSE(column.reloadIfChanged());
  EXPECT_EQ(column.entry("s1").title, "명령으로");
  EXPECT_EQ(column.entry("s3").memo, "저장 전");
  command.setMemo("s2", std::nullopt);
  command.flush();
  EXPECT_TRUE(column.reloadIfChanged());
  EXPECT_EQ(column.entry("s2"), NotesEntry{});
  column.flush();
  EXPECT_EQ(onDisk(folder, "s3").memo, "저장 전");
  EXPECT_EQ(onDisk(folder, "s1").title, "명령으로");
  EXPECT_FALSE(column.reloadIfChanged());
}

TEST(NotesStore, ForgetsNothingWhenTheFileIsDamagedOrGone) {
  enum class Next { edit, save, quit };
  for (const auto& [damage, next] : std::vector<std::pair<std::string, Next>>{
           {"{깨짐", Next::edit},
           {"", Next::edit},
           {"{깨짐", Next::save},
           {"", Next::save},
           {"{깨짐", Next::quit},
           {"", Next::quit},
       }) {
    const TemporaryFolder folder;
    auto store = std::make_unique<NotesStore>(manual(folder));
    store->setMemo("s1", "하나");
    store->flush();
    store->setMemo("s1", "둘");
    store->flush();
    const auto backup = folder.read("notes.bak.json");
    if (damage.empty()) {
      std::filesystem::remove(folder.path("notes.json"));
    } else {
      folder.write("notes.json", damage);
    }
    EXPECT_FALSE(next != Next::quit && store->reloadIfChanged());
    if (next == Next::edit) store->setTitle("s2", "셋");
    if (next == Next::quit) store.reset();
    if (store) store->flush();
    EXPECT_EQ(onDisk(folder, "s1").memo, "둘") << damage;
    EXPECT_EQ(onDisk(folder, "s2").title.has_value(), next == Next::edit) << damage;
    EXPECT_EQ(folder.read("notes.bak.json"), backup) << damage;
  }
}

TEST(NotesStore, TellsAtOnceThatTheFileCannotBeReadAnyMore) {
  const TemporaryFolder folder;
  auto options = manual(folder);
  options.saveDelay = soon;
  NotesStore store(options);
  store.setMemo("s1", "하나");
  store.flush();
  std::filesystem::rename(folder.path("notes.json"), folder.path("away"));
  std::filesystem::create_directory(folder.path("notes.json"));
  EventCounter told;
  store.onProblem([&](const auto& problem) {
    if (problem) told.add();
  });
  store.reloadIfChanged();
  EXPECT_TRUE(told.waitFor(1));
}

TEST(NotesStore, LogsWhatAnOlderCopyOfTheFileTakesAway) {
  for (const bool withLog : {true, false}) {
    const TemporaryFolder folder;
    auto options = manual(folder);
    double now = 1;
    options.clock = [&] { return timeAt(now); };
    NotesStore store(options);
    store.setMemo("s1", "옛 메모");
    store.flush();
    const auto copy = folder.read("notes.json");
    now = 2;
    store.setMemo("s1", "새 메모");
    store.setTitle("s2", "이름");
    store.flush();
    folder.write("notes.json", copy);
    if (!withLog) std::filesystem::create_directory(folder.path("removed-notes.jsonl"));
    EXPECT_EQ(store.reloadIfChanged(), withLog);
    EXPECT_EQ(store.entry("s1").memo, withLog ? "옛 메모" : "새 메모");
    if (!withLog) {
      // A save that would lose them fails, too.
      store.setMemo("s3", "셋");
      store.flush();
      EXPECT_TRUE(store.problem());
      EXPECT_EQ(folder.read("notes.json"), copy);
      std::filesystem::remove(folder.path("removed-notes.jsonl"));
    }
    store.flush();
    EXPECT_FALSE(store.problem());
    EXPECT_EQ(folder.read("removed-notes.jsonl"),
              "{\"at\":2.0,\"memo\":\"새 메모\",\"sid\":\"s1\"}\n"
              "{\"at\":2.0,\"sid\":\"s2\",\"title\":\"이름\"}\n");
  }
}

TEST(NotesStore, LogsAMemoOnceWhoeverWroteAndRemovedIt) {
  const TemporaryFolder folder;
  NotesStore column(manual(folder));
  const auto command = [&](const std::string& memo) {
    NotesStore store(manual(folder));
    const auto before = store.entry("s1").memo.value_or("");
    store.setMemo("s1", memo);
    store.memoEditEnded("s1", before);
  };
  command("남의 것");
  column.reloadIfChanged();
  // Edited in the column, once it has shown it.
  column.setMemo("s1", "남의");
  column.setMemo("s1", "내 것");
  column.memoEditEnded("s1", "남의 것");
  column.flush();
  command("");
  column.reloadIfChanged();
  column.flush();
  const auto log = folder.read("removed-notes.jsonl");
  EXPECT_EQ(std::count(log.begin(), log.end(), '\n'), 2) << log;
  EXPECT_THAT(log, HasSubstr("남의 것"));
  EXPECT_THAT(log, HasSubstr("내 것"));
}

TEST(NotesStore, DropsAMemoOfBlanksThatAHandWrote) {
  const TemporaryFolder folder;
  folder.write("notes.json", R"({"v":1,"entries":{"s1":{"title":"a","memo":" \n","updated":1}}})");
  NotesStore store(manual(folder));
  store.setTitle("s1", std::nullopt);
  EXPECT_EQ(store.entry("s1"), NotesEntry{});
}

TEST(NotesStore, SavesWhatIsLeftAtItsEnd) {
  const TemporaryFolder folder;
  { NotesStore(manual(folder)).setMemo("s1", "끝"); }
  EXPECT_EQ(onDisk(folder, "s1").memo, "끝");
}

TEST(NotesStore, MakesNoCallerWaitForASave) {
  const TemporaryFolder folder;
  EventCounter writing;
  EventCounter letGo;
  auto options = manual(folder);
  options.disk = std::make_shared<HookedNotesDisk>([&](const auto& call, const auto&) {
    if (call == "create") {
      writing.add();
      letGo.waitFor(1);
    }
    return std::error_code();
  });
  options.saveDelay = soon;
  NotesStore store(options);
  store.setMemo("s1", "하나");
  ASSERT_TRUE(writing.waitFor(1));
  store.setMemo("s1", "둘");
  EXPECT_EQ(store.entry("s1").memo, "둘");
  EXPECT_TRUE(store.carry("s1", "s2"));
  EXPECT_EQ(folder.read("notes.json"), "");
  letGo.add();
  store.flush();
  EXPECT_EQ(onDisk(folder, "s1").memo, "둘");
}

TEST(NotesStore, RetriesAFailedSaveUntilItSucceeds) {
  const TemporaryFolder folder;
  std::atomic<int> failures = 3;
  auto options = manual(folder);
  options.retryDelay = soon;
  options.disk = std::make_shared<HookedNotesDisk>([&](const auto& call, const auto&) {
    return call == "create" && failures-- > 0 ? std::make_error_code(std::errc::no_space_on_device)
                                              : std::error_code();
  });
  NotesStore store(options);
  EventCounter solved;
  std::vector<std::string> told;
  store.onProblem([&](const auto& problem) {
    told.push_back(problem.value_or("none"));
    if (!problem) solved.add();
  });
  store.setMemo("s1", "하나");
  store.flush();
  ASSERT_TRUE(solved.waitFor(1));
  EXPECT_EQ(onDisk(folder, "s1").memo, "하나");
  // Three times the same is one change.
  EXPECT_EQ(
      told,
      (std::vector<std::string>{
          "메모를 저장하지 못했어요. 5초 뒤 다시 시도해요 (디스크에 남은 자리가 없어요)", "none"}));
}

}  // namespace
}  // namespace zelvane
