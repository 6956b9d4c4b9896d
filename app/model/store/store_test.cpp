#include <gmock/gmock.h>

#include "app/model/store/samples.h"
#include "app/model/store/saved_settings.h"
#include "tests/support/store_fixture.h"

namespace zelvane {
namespace {

using test::EventCounter;
using test::StoreFixture;
using testing::ElementsAre;
using testing::IsEmpty;

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
    with.sources.keepRecordUp = [&](const ClaudeProc& proc, Time) {
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
                                    {"friendOf", {{"untold", 1}, {"x", 2}}},
                                    {"friendSeen", {{"x", 1.5}}}}),
                    now);
  EXPECT_EQ(good.theme, ThemeID::a);
  EXPECT_FALSE(good.anchorTop);
  EXPECT_THAT(good.pinned, ElementsAre("x"));
  EXPECT_THAT(good.acked, ElementsAre(std::pair("new", 1'799'395'200)));
  EXPECT_EQ(good.friendOf.at("x"), 2);
  EXPECT_THAT(good.friendSeen,
              ElementsAre(std::pair("untold", 1'800'000'000), std::pair("x", 1.5)));

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
