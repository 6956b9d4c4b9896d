#include "app/model/refresh/refresh_pass.h"

#include <gmock/gmock.h>

namespace zelvane {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using enum ZelvaneState;

const Time now = timeAt(1'800'000'000);

LiveSession live(std::int32_t pid, const std::string& id, const std::string& status = "idle") {
  return {{pid, id, "/home/me/proj", status, now - Seconds(60)},
          "/dev/pts/" + std::to_string(pid),
          std::nullopt};
}

LiveSession live(std::int32_t pid, const std::string& id, const std::string& status,
                 HookRecord hook) {
  auto session = live(pid, id, status);
  session.hook = std::move(hook);
  return session;
}

RefreshInputs inputs(std::vector<LiveSession> sessions) {
  RefreshInputs result;
  result.live = std::move(sessions);
  result.home = "/home/me";
  result.friendCount = 8;
  return result;
}

ZelvaneSession onlyRow(const RefreshInputs& given, RefreshMemory memory = {}) {
  auto result = refreshPass(given, std::move(memory), now);
  EXPECT_EQ(result.rows.size(), 1U);
  return result.rows.empty() ? ZelvaneSession() : result.rows.front();
}

TEST(RefreshPass, WritesTheSecondLineByState) {
  HookRecord prompt;
  prompt.prompt = "fix [Image #1] it\nnow";
  HookRecord reason;
  reason.reason = "질문: 어느 색?";
  HookRecord todo = prompt;
  todo.todos = {{3, 7, "Writing the test"}};
  HookRecord todoWithoutItem = prompt;
  todoWithoutItem.todos = {{3, 7, ""}};
  HookRecord agent = prompt;
  agent.bgAgents = 1;
  agent.doneAt = now;
  HookRecord done = prompt;
  done.state = "done";
  done.doneAt = now;
  HookRecord doneSilently = done;
  doneSilently.prompt = "<task-notification>";

  struct Case {
    const char* what;
    const char* status;
    std::optional<HookRecord> hook;
    ZelvaneState state;
    const char* subtitle;
  };
  const std::vector<Case> cases{
      {"waits, no record", "waiting", {}, waiting, "대답을 기다려요"},
      {"waits, no reason", "waiting", prompt, waiting, "대답을 기다려요"},
      {"waits with a reason", "waiting", reason, waiting, "질문: 어느 색?"},
      {"works on a to-do", "busy", todo, working, "Writing the test"},
      {"works, no current to-do", "busy", todoWithoutItem, working, "fix  it now"},
      {"works, nothing known", "busy", {}, working, ""},
      {"agents", "idle", agent, agents, "fix  it now"},
      {"done", "idle", done, ZelvaneState::done, "fix  it now"},
      {"done, no prompt", "idle", doneSilently, ZelvaneState::done, "끝났어요 · 확인해 주세요"},
      {"idle", "idle", prompt, idle, "fix  it now"},
      {"idle, old shell", "shell", prompt, idle, "뒤에서 명령 실행 중 · fix  it now"},
      {"idle, shell, no record", "shell", {}, idle, "뒤에서 명령 실행 중"},
  };
  for (const auto& [what, status, hook, state, subtitle] : cases) {
    auto session = live(1, "s", status);
    session.hook = hook;
    auto given = inputs({session});
    given.titles = TabTitles{{"/dev/pts/1", "tab"}};
    const auto row = onlyRow(given);
    EXPECT_EQ(row.state, state) << what;
    EXPECT_EQ(row.subtitle, subtitle) << what;
    EXPECT_EQ(row.title, "tab") << what;
  }
}

TEST(RefreshPass, ChoosesTheTitleAndNeverRepeatsIt) {
  HookRecord prompt;
  prompt.prompt = "the prompt";
  struct Case {
    const char* what;
    const char* tab;
    const char* cwd;
    bool hasPrompt;
    std::optional<std::string> own;
    const char* claudeTitle;
    const char* title;
    const char* subtitle;
  };
  const std::vector<Case> cases{
      {"tab title", "tab", "/home/me/proj", true, {}, "tab", "tab", "the prompt"},
      {"prompt", "", "/home/me/proj", true, {}, "the prompt", "the prompt", "proj"},
      {"folder", "", "/home/me/proj", false, {}, "proj", "proj", ""},
      {"home", "", "/home/me", false, {}, "~", "~", ""},
      {"home with a slash is not home", "", "/home/me/", false, {}, "me", "me", ""},
      {"root", "", "/", false, {}, "/", "/", ""},
      {"nothing known", "", "", false, {}, "", "", ""},
      {"own title", "tab", "/p", true, "mine", "tab", "mine", "the prompt"},
      {"own title repeats the prompt", "tab", "/p", true, "the prompt", "tab", "the prompt", "p"},
  };
  for (const auto& [what, tab, cwd, hasPrompt, own, claudeTitle, title, subtitle] : cases) {
    auto session = live(1, "s");
    session.proc.cwd = cwd;
    if (hasPrompt) session.hook = prompt;
    auto given = inputs({session});
    given.titles = TabTitles{{"/dev/pts/1", tab}};
    given.notes["s"] = {own, "memo", 0};
    const auto row = onlyRow(given);
    EXPECT_EQ(row.claudeTitle, claudeTitle) << what;
    EXPECT_EQ(row.title, title) << what;
    EXPECT_EQ(row.subtitle, subtitle) << what;
    EXPECT_EQ(row.renamed, own.has_value()) << what;
    EXPECT_EQ(row.memo, "memo") << what;
  }
}

TEST(RefreshPass, FillsTheOtherFields) {
  HookRecord hook;
  hook.todos = {{2, 5, ""}};
  auto session = live(4, "s", "busy", hook);
  session.model = {"Opus 5", "high", "low"};
  auto given = inputs({session});
  given.choices.pins = {"x", "s"};
  RefreshMemory memory;
  memory.friends.friendOf = {{"s", 3}};
  const auto row = onlyRow(given, memory);
  EXPECT_EQ(row.id, "s");
  EXPECT_EQ(row.pid, 4);
  EXPECT_EQ(row.tty, "/dev/pts/4");
  EXPECT_EQ(row.cwd, "/home/me/proj");
  EXPECT_EQ(row.progress, (ZelvaneSession::Progress{2, 5}));
  EXPECT_EQ(row.friendIndex, 3);
  EXPECT_EQ(row.model + row.effort + row.suggestedEffort, "Opus 5highlow");
  EXPECT_TRUE(row.pinned && row.today);

  hook.todos = {{0, 0, ""}};
  EXPECT_FALSE(onlyRow(inputs({live(4, "s", "busy", hook)})).progress) << "nothing to do";
  hook.todos = {{2, 5, ""}};
  EXPECT_FALSE(onlyRow(inputs({live(4, "s", "idle", hook)})).progress) << "not working";
  auto timeless = live(4, "s");
  timeless.proc.updatedAt = std::nullopt;
  EXPECT_FALSE(onlyRow(inputs({timeless})).today);
}

TEST(RefreshPass, AcknowledgesWhatFinishedInTheTabInFront) {
  HookRecord done;
  done.state = "done";
  done.doneAt = now - Seconds(1);
  auto given = inputs({live(1, "front", "idle", done), live(2, "behind", "idle", done)});
  given.frontTTY = "/dev/pts/1";
  const auto result = refreshPass(given, {}, now);
  EXPECT_THAT(result.acknowledged, ElementsAre("front"));
  EXPECT_EQ(result.rows[0].id, "behind");
  EXPECT_EQ(result.rows[0].state, ZelvaneState::done);
  EXPECT_EQ(result.rows[1].state, idle);
}

HookRecord startedBy(const std::string& source) {
  HookRecord hook;
  hook.source = source;
  return hook;
}

TEST(RefreshPass, CarriesNotesOnlyAfterAClear) {
  struct Case {
    const char* what;
    std::optional<HookRecord> hook;
    double secondsLater;
    bool carried;
    bool pending;
  };
  const std::vector<Case> cases{
      {"clear", startedBy("clear"), 0, true, false},
      {"clear, told late but in time", startedBy("clear"), 5, true, false},
      {"another reason", startedBy("resume"), 0, false, false},
      {"no record yet", std::nullopt, 5, false, true},
      {"record without a source", HookRecord(), 5, false, true},
      {"no record for too long", std::nullopt, 5.5, false, false},
  };
  for (const auto& [what, hook, later, carried, pending] : cases) {
    auto before = refreshPass(inputs({live(1, "old")}), {}, now).memory;
    before.friends.friendOf["old"] = 7;
    before = refreshPass(inputs({live(1, "new")}), before, now).memory;
    EXPECT_EQ(before.pendingCarry.size(), 1U) << what;

    auto session = live(1, "new");
    session.hook = hook;
    auto given = inputs({session});
    given.notes["old"] = {"title", "memo", 1};
    const auto result = refreshPass(given, before, now + Seconds(later));
    EXPECT_EQ(result.carries == (std::vector<NotesCarry>{{"old", "new"}}), carried) << what;
    EXPECT_EQ(result.rows[0].title == "title", carried) << what;
    EXPECT_EQ(result.rows[0].friendIndex == 7, carried || pending) << what;
    EXPECT_EQ(!result.memory.pendingCarry.empty(), pending) << what;
    EXPECT_THAT(refreshPass(given, result.memory, now + Seconds(later)).carries, IsEmpty())
        << what << ", only once";
  }
}

TEST(RefreshPass, CarriesWithRespect) {
  auto memory = refreshPass(inputs({live(1, "old")}), {}, now).memory;
  memory.friends.friendOf = {{"old", 7}, {"new", 2}};
  auto given = inputs({live(1, "new", "idle", startedBy("clear"))});
  given.notes = {{"old", {"old title", "old memo", 1}}, {"new", {"new title", {}, 2}}};
  const auto own = refreshPass(given, memory, now);
  EXPECT_EQ(own.rows[0].title, "new title") << "notes of the new session's own stay";
  EXPECT_FALSE(own.rows[0].memo);
  EXPECT_EQ(own.rows[0].friendIndex, 2);

  given.notes.erase("new");
  given.choices.readOnly = true;
  memory.friends.friendOf.erase("new");
  const auto readOnly = refreshPass(given, memory, now);
  EXPECT_THAT(readOnly.carries, IsEmpty());
  EXPECT_FALSE(readOnly.rows[0].renamed);
  EXPECT_EQ(readOnly.rows[0].friendIndex, 7) << "the character follows the tab all the same";
}

TEST(RefreshPass, GivesEachSessionACharacterThatStays) {
  auto given = inputs({live(1, "a"), live(2, "b")});
  given.friendCount = 2;
  const auto first = refreshPass(given, {}, now + Seconds(30));
  EXPECT_NE(first.rows[0].friendIndex, first.rows[1].friendIndex);
  EXPECT_TRUE(first.saveFriends);
  EXPECT_EQ(refreshPass(given, {}, now).memory.friends.friendOf, first.memory.friends.friendOf)
      << "and the same one where nothing is remembered";
  std::swap(given.live[0], given.live[1]);
  given.live.insert(given.live.begin(), live(3, "c"));
  const auto second = refreshPass(given, first.memory, now + Seconds(40));
  for (const char* id : {"a", "b"}) {
    EXPECT_EQ(second.memory.friends.friendOf.at(id), first.memory.friends.friendOf.at(id)) << id;
  }
  EXPECT_FALSE(refreshPass(given, second.memory, now + Seconds(50)).saveFriends);
  EXPECT_TRUE(refreshPass(given, second.memory, now + Seconds(60)).saveFriends);
  given.choices.readOnly = true;
  EXPECT_FALSE(refreshPass(given, {}, now + Seconds(60)).saveFriends);
}

TEST(RefreshPass, ForgetsProcessesThatAreGone) {
  auto memory = refreshPass(inputs({live(1, "a"), live(2, "b")}), {}, now).memory;
  memory = refreshPass(inputs({live(2, "b")}), memory, now).memory;
  EXPECT_THAT(memory.sidByPid, ElementsAre(std::pair(2, "b")));
  const auto reused = refreshPass(inputs({live(1, "c", "idle", startedBy("clear"))}), memory, now);
  EXPECT_THAT(reused.carries, IsEmpty()) << "the process id came back as somebody else's";
}

TEST(TitlesWanted, ByAgeVisibilityAndNewTabs) {
  const auto memory = [](double age, std::set<std::string> tried) {
    RefreshMemory result;
    result.titlesAt = now - Seconds(age);
    result.titleTried = std::move(tried);
    return result;
  };
  struct Case {
    const char* what;
    RefreshMemory memory;
    std::set<std::string> ttys;
    bool visible;
    bool wanted;
  };
  const std::vector<Case> cases{
      {"never asked", {}, {"a"}, false, true},
      {"no tab", {}, {}, true, false},
      {"fresh", memory(60, {"a"}), {"a"}, true, false},
      {"stale", memory(60.5, {"a"}), {"a"}, true, true},
      {"stale but hidden", memory(6000, {"a"}), {"a"}, false, false},
      {"new tab, asked just now", memory(10, {"a"}), {"a", "b"}, true, false},
      {"new tab", memory(10.5, {"a"}), {"a", "b"}, false, true},
      {"the clock was set back", memory(-3000, {"a"}), {"a"}, true, true},
      {"fewer tabs", memory(10.5, {"a", "b"}), {"b"}, true, false},
  };
  for (const auto& [what, remembered, ttys, visible, wanted] : cases) {
    EXPECT_EQ(titlesWanted(remembered, ttys, visible, now), wanted) << what;
  }
}

TEST(RefreshPass, RemembersTitlesUntilTheyAreFetchedAgain) {
  auto given = inputs({live(1, "s")});
  given.titles = TabTitles{{"/dev/pts/1", "first"}};
  const auto first = refreshPass(given, {}, now);
  EXPECT_EQ(first.memory.titlesAt, now);
  EXPECT_TRUE(first.memory.titleTried.contains("/dev/pts/1"));
  given.titles = std::nullopt;
  const auto second = refreshPass(given, first.memory, now + Seconds(30));
  EXPECT_EQ(second.rows[0].title, "first");
  EXPECT_EQ(second.memory.titlesAt, now);
}

}  // namespace
}  // namespace zelvane
