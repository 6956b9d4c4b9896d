#include "app/model/store/store.h"

#include <atomic>
#include <gmock/gmock.h>
#include <thread>

#include "core/run_loop.h"

#include "app/model/store/samples.h"
#include "app/model/store/saved_settings.h"
#include "tests/support/event_counter.h"
#include "tests/support/temporary_folder.h"

namespace zelvane {
namespace {

using test::EventCounter;
using test::TemporaryFolder;
using testing::ElementsAre;
using testing::IsEmpty;

/// A store over sessions of values, with its main thread on a thread of its own.
class StoreFixture : public testing::Test {
 protected:
  StoreFixture() {
    main_ = std::thread([this] { loop_.run(); });
  }
  ~StoreFixture() override {
    onMain([this] { store_.reset(); });
    loop_.stop();
    main_.join();
  }

  ZelvaneStore::Options options() {
    ZelvaneStore::Options result;
    result.sources.claudeProcs = [this](Time) {
      const int running = ++running_;
      EXPECT_EQ(running, 1) << "passes never overlap";
      if (blockPass_) unblock_.waitFor(1);
      const auto procs = [this] {
        const std::lock_guard lock(mutex_);
        return procs_;
      }();
      --running_;
      passes_.add();
      return procs;
    };
    result.sources.tty = [](std::int32_t pid) { return "/dev/pts/" + std::to_string(pid); };
    result.sources.hookRecord = [this](const std::string& id) -> std::optional<HookRecord> {
      const std::lock_guard lock(mutex_);
      if (!hooks_.contains(id)) return std::nullopt;
      return hooks_[id];
    };
    result.defaults = defaults_;
    result.mainThread = loop_.executor();
    result.clock = [] { return timeAt(1'800'000'000); };
    result.notesDir = folder_.path("notes");
    result.dataDir = folder_.path("data");
    result.hookSessions = folder_.path("data/sessions");
    result.watchedFolders = {folder_.path("claude"), folder_.path("data/sessions")};
    result.tick = Seconds(3600);
    result.coalescing = Seconds(0.05);
    return result;
  }

  void create(ZelvaneStore::Options with) {
    store_ = ZelvaneStore::create(std::move(with));
    store_->observe([this](ZelvaneStore::Change change) {
      if (change == ZelvaneStore::Change::passed) published_.add();
      if (change == ZelvaneStore::Change::sessions) redraws_.add();
    });
  }

  void setProcs(std::vector<ClaudeProc> procs) {
    const std::lock_guard lock(mutex_);
    procs_ = std::move(procs);
  }

  /// Runs the task on the store's main thread and waits for it.
  void onMain(const std::function<void()>& task) {
    EventCounter ran;
    loop_.post([&] {
      task();
      ran.add();
    });
    ASSERT_TRUE(ran.waitFor(1));
  }

  /// One pass from request to published rows.
  void pass() {
    const int before = published_.count();
    store_->refreshNow();
    ASSERT_TRUE(published_.waitFor(before + 1));
  }

  TemporaryFolder folder_;
  std::shared_ptr<MemoryDefaults> defaults_ = std::make_shared<MemoryDefaults>();
  EventCounter passes_, published_, redraws_, unblock_;
  std::atomic<bool> blockPass_ = false;
  std::atomic<int> running_ = 0;
  std::mutex mutex_;
  std::vector<ClaudeProc> procs_;
  std::map<std::string, HookRecord> hooks_;
  std::shared_ptr<ZelvaneStore> store_;
  RunLoop loop_;
  std::thread main_;
};

TEST_F(StoreFixture, PublishesOnlyWhatChanged) {
  create(options());
  setProcs({{1, "a", "/p", "busy"}});
  pass();
  pass();
  EXPECT_EQ(redraws_.count(), 1);
  onMain([&] {
    EXPECT_EQ(store_->sessions().at(0).state, ZelvaneState::working);
    EXPECT_TRUE(store_->clockNeeded());
    store_->setVisible(false);
    EXPECT_FALSE(store_->clockNeeded());
  });
  setProcs({});
  pass();
  onMain([&] { EXPECT_THAT(store_->sessions(), IsEmpty()); });
}

TEST_F(StoreFixture, FoldsABurstOfRequestsIntoOnePass) {
  create(options());
  for (int i = 0; i < 10; ++i) store_->scheduleRefresh();
  ASSERT_TRUE(published_.waitFor(1));
  pass();  // the queue is serial: a second coalesced pass would have run before or be seen below
  EXPECT_EQ(passes_.count(), 2);
}

TEST_F(StoreFixture, RefreshNowDoesNotReplaceACoalescedPass) {
  create(options());
  store_->scheduleRefresh();
  store_->refreshNow();
  ASSERT_TRUE(published_.waitFor(2));
}

TEST_F(StoreFixture, FollowsFoldersThatAppearLater) {
  create(options());
  onMain([&] { store_->start(); });
  ASSERT_TRUE(published_.waitFor(1));
  EXPECT_TRUE(std::filesystem::is_directory(folder_.path("data/sessions")));
  int before = published_.count();
  folder_.write("claude/1.json", "{}");
  ASSERT_TRUE(published_.waitFor(before + 1)) << "the folder and a file in it";
  before = published_.count();
  std::filesystem::resize_file(folder_.path("claude/1.json"), 0);
  ASSERT_TRUE(published_.waitFor(before + 1)) << "a file rewritten in place";
}

TEST_F(StoreFixture, TicksWithoutEvents) {
  auto with = options();
  with.tick = Seconds(0.01);
  create(with);
  onMain([&] { store_->start(); });
  EXPECT_TRUE(published_.waitFor(3));
}

TEST_F(StoreFixture, AcknowledgesForGood) {
  HookRecord done;
  done.state = "done";
  done.doneAt = timeAt(1'799'999'990);
  hooks_["a"] = done;
  setProcs({{1, "a"}});
  create(options());
  pass();
  onMain([&] {
    EXPECT_EQ(store_->sessions().at(0).state, ZelvaneState::done);
    store_->ack("a");
  });
  pass();
  onMain([&] { EXPECT_EQ(store_->sessions().at(0).state, ZelvaneState::idle); });
  EXPECT_EQ(savedSettings(*defaults_, timeAt(1'800'000'000)).acked.at("a"), 1'800'000'000);
}

TEST_F(StoreFixture, SavesCharactersUnlessReadOnly) {
  for (const bool readOnly : {true, false}) {
    auto with = options();
    with.readOnly = readOnly;
    with.sources.friendCount = [] { return std::size_t{18}; };
    create(std::move(with));
    setProcs({{1, "a"}});
    pass();
    const auto saved = savedSettings(*defaults_, timeAt(1'800'000'000));
    EXPECT_EQ(saved.friendOf.contains("a"), !readOnly);
    EXPECT_EQ(saved.friendSeen.contains("a"), !readOnly);
    onMain([&] {
      if (!readOnly) {
        EXPECT_EQ(store_->sessions().at(0).friendIndex, saved.friendOf.at("a"));
      }
      store_.reset();
    });
  }
}

TEST_F(StoreFixture, OffersWhatARebootClosedUntilItIsOpen) {
  folder_.write("data/autosnap.json", R"({"v": 2, "saved_at": 1000, "items": [
      {"sid": "a", "cwd": "/p", "last_seen": 1000}, {"sid": "b", "cwd": "/p", "last_seen": 1000}]})");
  std::vector<std::string> outputs{"완료: 1개, 실패 1", "완료: 1개, 실패 0"};
  EventCounter runs, offers;
  auto with = options();
  with.bootTime = [] { return timeAt(2000); };
  with.sources.folderExists = [](const auto&) { return true; };
  with.restoreCommand = [&](const std::string& snapshot, bool exact, const auto&) {
    EXPECT_EQ(snapshot, folder_.path("data/rebootsnap.json"));
    EXPECT_FALSE(exact);
    auto output = outputs.at(static_cast<std::size_t>(runs.count()));
    runs.add();
    return output;
  };
  setProcs({{1, "a"}});
  create(with);
  onMain([&] {
    store_->observe([&](ZelvaneStore::Change change) {
      if (change == ZelvaneStore::Change::restoring) offers.add();
    });
    store_->start();
  });
  pass();
  onMain([&] {
    ASSERT_EQ(store_->offers().pendingRestore().size(), 1U) << "a runs already";
    store_->offers().restoreReboot();
    store_->offers().restoreReboot();
  });
  ASSERT_TRUE(offers.waitFor(2));
  onMain([&] {
    EXPECT_EQ(store_->offers().restoreMessage(),
              "1개를 열지 못했어요. 다시 누르면 남은 것만 열어요.");
    EXPECT_FALSE(store_->offers().pendingRestore().empty());
    store_->offers().restoreReboot();
  });
  ASSERT_TRUE(offers.waitFor(4));
  EXPECT_EQ(runs.count(), 2) << "one at a time";
  onMain([&] { EXPECT_THAT(store_->offers().pendingRestore(), IsEmpty()); });
  EXPECT_FALSE(std::filesystem::exists(folder_.path("data/rebootsnap.json")));
}

TEST_F(StoreFixture, OffersTabsThatWereClosedAllAtOnce) {
  folder_.write("data/there", "");
  auto with = options();
  with.restoreCommand = [&](const std::string& snapshot, bool exact, const auto&) {
    EXPECT_EQ(snapshot, folder_.path("data/recentclosed.json"));
    EXPECT_TRUE(exact);
    return std::string("되살릴 탭이 없어요");
  };
  EventCounter restoring;
  setProcs({{1, "a"}, {2, "b"}, {3, "c"}});
  create(with);
  pass();
  setProcs({{3, "c"}});
  pass();
  onMain([&] {
    EXPECT_EQ(store_->offers().recentClosed().size(), 2U);
    store_->observe([&](ZelvaneStore::Change change) {
      if (change == ZelvaneStore::Change::restoring) restoring.add();
    });
    store_->offers().restoreRecent();
  });
  ASSERT_TRUE(restoring.waitFor(2));
  onMain([&] {
    EXPECT_THAT(store_->offers().recentClosed(), IsEmpty());
    EXPECT_EQ(store_->offers().restoreMessage(), "");
  });
  EXPECT_EQ(get::list(*readJSON(folder_.path("data/recentclosed.json")), "items")->size(), 2U);
}

TEST_F(StoreFixture, KeepsTheSnapshotAsItWasWhenTheMachineGoesDown) {
  folder_.write("data/there", "");
  setProcs({{1, "a"}});
  create(options());
  pass();
  const auto before = folder_.read("data/autosnap.json");
  EXPECT_THAT(before, testing::HasSubstr("\"sid\": \"a\""));
  store_->setFrozen(true);
  setProcs({});
  pass();
  onMain([&] { store_->markQuit(); });
  EXPECT_EQ(folder_.read("data/autosnap.json"), before);
  store_->setFrozen(false);
  onMain([&] { store_->markQuit(); });
  EXPECT_THAT(folder_.read("data/autosnap.json"), testing::HasSubstr("app_quit"));
}

TEST_F(StoreFixture, JumpsInTheOrderOfTheClicks) {
  std::vector<std::int32_t> jumps;
  EventCounter jumped;
  auto with = options();
  with.jump = [&](const std::string& tty, std::int32_t pid) {
    EXPECT_EQ(tty, "/dev/pts/" + std::to_string(pid));
    jumps.push_back(pid);
    jumped.add();
  };
  HookRecord done;
  done.state = "done";
  done.doneAt = timeAt(1'799'999'990);
  hooks_["b"] = done;
  setProcs({{1, "a"}, {2, "b"}});
  create(with);
  pass();
  std::string copied;
  onMain([&] {
    for (const auto& row : store_->sessions()) store_->open(row);
    ZelvaneSession nowhere;
    store_->open(nowhere);
    store_->prepareEffort(store_->sessions()[0], "high", [&](const auto& text) { copied = text; });
  });
  ASSERT_TRUE(jumped.waitFor(3));
  EXPECT_THAT(jumps, ElementsAre(2, 1, 2)) << "done rows come first";
  EXPECT_EQ(copied, "/effort high");
  pass();
  onMain([&] {
    for (const auto& row : store_->sessions()) EXPECT_EQ(row.state, ZelvaneState::idle);
  });
}

TEST_F(StoreFixture, ClosesTheEditorOfAVanishedRow) {
  setProcs({{1, "a"}});
  create(options());
  pass();
  onMain([&] {
    store_->setEditing("memo:a");
    store_->endEditing("title:a");
    EXPECT_EQ(store_->editing(), "memo:a") << "another editor's late end";
  });
  pass();
  onMain([&] { EXPECT_EQ(store_->editing(), "memo:a"); });
  setProcs({});
  pass();
  onMain([&] { EXPECT_FALSE(store_->editing()); });
}

TEST_F(StoreFixture, SavesPinsAlwaysAndOtherChoicesUnlessReadOnly) {
  auto with = options();
  with.readOnly = true;
  create(with);
  onMain([&] {
    ZelvaneSession a, b;
    a.id = "a";
    b.id = "b";
    store_->setTheme(ThemeID::b);
    store_->setAnchorTop(false);
    for (const auto& session : {a, b, a}) store_->togglePin(session);
    EXPECT_THAT(store_->pinned(), ElementsAre("b"));
    store_->ack("a");
  });
  onMain([] {});  // acknowledgements are saved by a task of their own
  EXPECT_EQ(defaults_->value("pinned"), Json({"b"}));
  for (const char* key : {"theme", "anchorTop", "acked"})
    EXPECT_FALSE(defaults_->value(key)) << key;
}

TEST_F(StoreFixture, MakesTheRecordFolderUnlessReadOnly) {
  for (const bool readOnly : {true, false}) {
    auto with = options();
    with.readOnly = readOnly;
    create(with);
    const int before = published_.count();
    onMain([&] { store_->start(); });
    ASSERT_TRUE(published_.waitFor(before + 1));
    EXPECT_EQ(std::filesystem::exists(folder_.path("data")), !readOnly);
  }
}

TEST_F(StoreFixture, RewritesOutdatedRecordsUnlessReadOnly) {
  HookRecord waiting;
  waiting.state = "waiting";
  waiting.updatedAt = timeAt(1000);
  hooks_["a"] = hooks_["b"] = waiting;
  setProcs({{1, "a", "/p", "busy", timeAt(1001)}, {2, "b", "/p", "waiting", timeAt(1001)}});
  for (const bool readOnly : {true, false}) {
    std::vector<std::string> rewritten;
    auto with = options();
    with.readOnly = readOnly;
    with.sources.keepRecordUp = [&](const ClaudeProc& proc) {
      rewritten.push_back(proc.sessionId);
    };
    create(with);
    pass();
    EXPECT_EQ(store_->sessions().size(), 2U);
    EXPECT_EQ(rewritten, readOnly ? std::vector<std::string>() : std::vector<std::string>{"a"});
    onMain([&] { store_.reset(); });
  }
}

TEST_F(StoreFixture, CarriesNotesAfterAClear) {
  setProcs({{1, "old"}});
  create(options());
  onMain([&] {
    store_->notes().setTitle("old", "이름");
    store_->notes().setMemo("old", "다음 할 일");
  });
  pass();
  onMain([&] { EXPECT_EQ(store_->sessions().at(0).title, "이름"); });
  hooks_["new"].source = "clear";
  setProcs({{1, "new"}});
  pass();
  onMain([&] {
    EXPECT_EQ(store_->sessions().at(0).memo, "다음 할 일");
    EXPECT_EQ(store_->notes().entry("new").title, "이름");
    store_->notes().flush();
  });
  NotesStore other({.dir = folder_.path("notes")});
  other.setTitle("new", "다른 창에서");
  other.flush();
  pass();
  onMain([&] { EXPECT_EQ(store_->sessions().at(0).title, "다른 창에서"); });
}

TEST_F(StoreFixture, ShowsTheNotesProblem) {
  folder_.write("notes/notes.json", "{");
  create(options());
  onMain([&] { EXPECT_TRUE(store_->notesProblem()); });
  EventCounter changes;
  onMain([&] {
    store_->observe([&](ZelvaneStore::Change change) {
      if (change == ZelvaneStore::Change::notesProblem) changes.add();
    });
    store_->notes().setProblem("다른 문제");
  });
  EXPECT_TRUE(changes.waitFor(1));
  onMain([&] { EXPECT_EQ(store_->notesProblem(), "다른 문제"); });
}

TEST_F(StoreFixture, EndsAfterTheRunningPassAndWithSavedNotes) {
  blockPass_ = true;
  create(options());
  onMain([&] { store_->notes().setMemo("a", "방금 적은 것"); });
  store_->refreshNow();
  while (running_ == 0) std::this_thread::yield();
  EventCounter ended;
  loop_.post([&] {
    store_.reset();
    EXPECT_EQ(running_, 0);
    ended.add();
  });
  unblock_.add();
  ASSERT_TRUE(ended.waitFor(1));
  EXPECT_EQ(NotesStore({.dir = folder_.path("notes"), .readOnly = true}).entry("a").memo,
            "방금 적은 것");
}

TEST(SavedSettings, TreatOtherTypesAsAbsent) {
  const Time now = timeAt(1'800'000'000);
  const auto good =
      savedSettings(MemoryDefaults({{"theme", "a"},
                                    {"anchorTop", false},
                                    {"pinned", {"x"}},
                                    {"acked", {{"new", 1'799'395'200}, {"old", 1'799'395'199}}},
                                    {"friendOf", {{"x", 2}}},
                                    {"friendSeen", {{"x", 1.5}}}}),
                    now);
  EXPECT_EQ(good.theme, ThemeID::a);
  EXPECT_FALSE(good.anchorTop);
  EXPECT_THAT(good.pinned, ElementsAre("x"));
  EXPECT_THAT(good.acked, ElementsAre(std::pair("new", 1'799'395'200)));
  EXPECT_EQ(good.friendOf.at("x"), 2);

  const auto bad = savedSettings(MemoryDefaults({{"theme", "x"},
                                                 {"anchorTop", "no"},
                                                 {"pinned", {"x", 1}},
                                                 {"acked", {{"a", "b"}}},
                                                 {"friendOf", {{"x", 1.5}}},
                                                 {"friendSeen", true}}),
                                 now);
  EXPECT_EQ(bad.theme, ThemeID::c);
  EXPECT_TRUE(bad.anchorTop);
  EXPECT_TRUE(bad.pinned.empty() && bad.acked.empty() && bad.friendOf.empty() &&
              bad.friendSeen.empty());
}

TEST(Samples, ShowEveryState) {
  const Time now = timeAt(1'800'000'000);
  const auto rows = showcaseRows(3, now);
  ASSERT_EQ(rows.size(), 5U);
  for (int i = 0; i < 5; ++i) {
    EXPECT_EQ(static_cast<int>(rows[i].state), i);
    EXPECT_EQ(rows[i].id, "show-" + std::to_string(i));
    EXPECT_EQ(rows[i].friendIndex, i % 3);
  }
  EXPECT_EQ(demoRows(3, 0, now).at(2).title, "시험 탭 3");
  EXPECT_THAT(demoRows(-1, 1, now), IsEmpty());
}

}  // namespace
}  // namespace zelvane
