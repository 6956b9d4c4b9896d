#include "app/model/refresh/gather.h"

#include <gmock/gmock.h>

namespace zelvane {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

const Time now = timeAt(1'800'000'000);

/// A machine of values, which notes every question it is asked.
struct FakeMachine {
  std::vector<ClaudeProc> procs;
  std::map<std::int32_t, std::string> ttys;
  std::map<std::string, HookRecord> hooks;
  std::vector<std::string> asked;

  RefreshSources sources() {
    RefreshSources doors;
    doors.home = "/home/me";
    doors.claudeProcs = [this](Time) { return procs; };
    doors.tty = [this](std::int32_t pid) {
      return ttys.contains(pid) ? std::optional(ttys[pid]) : std::nullopt;
    };
    doors.hookRecord = [this](const std::string& id, Time) {
      return hooks.contains(id) ? std::optional(hooks[id]) : std::nullopt;
    };
    doors.terminalTitles = [this](const auto& sessions) {
      asked.push_back("titles");
      EXPECT_EQ(sessions.size(), ttys.size());
      return TabTitles{{"/dev/pts/1", "✳ tab"}};
    };
    doors.frontTTY = [this](const auto&) {
      asked.push_back("front");
      return std::optional<std::string>("/dev/pts/1");
    };
    doors.notes = [this](const std::string& id) {
      asked.push_back("notes " + id);
      return NotesEntry{"title of " + id, {}, 0};
    };
    return doors;
  }
};

HookRecord finished() {
  HookRecord hook;
  hook.state = "done";
  hook.doneAt = now - Seconds(1);
  return hook;
}

TEST(Gather, DropsProcessesWithoutATerminal) {
  FakeMachine machine{.procs = {{1, "a"}, {2, "b"}, {3, "c"}},
                      .ttys = {{1, "/dev/pts/1"}, {3, "/dev/pts/3"}}};
  const auto inputs = gather(machine.sources(), {}, {}, now);
  ASSERT_EQ(inputs.live.size(), 2U);
  EXPECT_EQ(inputs.live[0].proc.sessionId, "a");
  EXPECT_EQ(inputs.live[1].tty, "/dev/pts/3");
}

TEST(Gather, BelievesTheClientsNewerWordAboutARecord) {
  HookRecord waiting;
  waiting.state = "waiting";
  waiting.reason = "질문: 색?";
  waiting.updatedAt = now - Seconds(5);
  waiting.workingSince = now - Seconds(60);
  const auto after = [&](const std::string& status, Time at) {
    FakeMachine machine{.procs = {{1, "a", "", status, at}},
                        .ttys = {{1, "/dev/pts/1"}},
                        .hooks = {{"a", waiting}}};
    return gather(machine.sources(), {}, {}, now).live.at(0);
  };
  const auto approved = after("busy", now);
  EXPECT_TRUE(approved.recordOutdated);
  EXPECT_EQ(approved.hook->state, "working");
  EXPECT_EQ(approved.hook->reason, "");
  EXPECT_EQ(approved.hook->workingSince, waiting.workingSince);
  const auto dismissed = after("idle", now);
  EXPECT_EQ(dismissed.hook->state, "idle");
  EXPECT_EQ(dismissed.hook->workingSince, std::nullopt);
  const auto older = after("busy", now - Seconds(6));
  EXPECT_FALSE(older.recordOutdated);
  EXPECT_EQ(older.hook, waiting);
}

TEST(Gather, AsksTerminalsOnlyWhenNeeded) {
  FakeMachine machine{.procs = {{1, "a"}}, .ttys = {{1, "/dev/pts/1"}}};
  RefreshMemory fresh;
  fresh.titlesAt = now;
  fresh.titleTried = {"/dev/pts/1"};
  EXPECT_FALSE(gather(machine.sources(), fresh, {}, now).titles);
  EXPECT_THAT(machine.asked, ElementsAre("notes a"));

  machine.asked.clear();
  machine.hooks["a"] = finished();
  const auto inputs = gather(machine.sources(), {}, {}, now);
  EXPECT_TRUE(inputs.frontTTY);
  EXPECT_EQ(inputs.titles, (TabTitles{{"/dev/pts/1", "tab"}})) << "without its glyph";
  EXPECT_THAT(machine.asked, ElementsAre("titles", "front", "notes a"));

  machine.asked.clear();
  EXPECT_FALSE(
      gather(machine.sources(), {}, {.acked = {{"a", secondsSince1970(now)}}}, now).frontTTY);
  EXPECT_THAT(machine.asked, ElementsAre("titles", "notes a")) << "the turn was seen";
}

TEST(Gather, FetchesTheNotesThatMayMove) {
  FakeMachine machine{.procs = {{1, "new"}}, .ttys = {{1, "/dev/pts/1"}}};
  RefreshMemory memory;
  memory.sidByPid = {{1, "old"}};
  memory.pendingCarry = {{"new", {"older", 0}}};
  const auto inputs = gather(machine.sources(), memory, {}, now);
  EXPECT_THAT(inputs.notes, testing::SizeIs(3));
  EXPECT_EQ(inputs.notes.at("older").title, "title of older");
}

TEST(Gather, AsksForModelsWithTheRecordsPathAndForCharacters) {
  HookRecord told;
  told.transcriptPath = "/t/b.jsonl";
  FakeMachine machine{.procs = {{1, "a"}, {2, "b"}},
                      .ttys = {{1, "/dev/pts/1"}, {2, "/dev/pts/2"}},
                      .hooks = {{"b", told}}};
  auto sources = machine.sources();
  sources.modelInfo = [](const std::string& id, const std::optional<std::string>& path, Time at) {
    EXPECT_EQ(at, now);
    return ModelInfo{id, path.value_or("none"), ""};
  };
  sources.friendCount = [] { return std::size_t{18}; };
  const auto inputs = gather(sources, {}, {}, now);
  EXPECT_EQ(inputs.live.at(0).model, (ModelInfo{"a", "none", ""}));
  EXPECT_EQ(inputs.live.at(1).model, (ModelInfo{"b", "/t/b.jsonl", ""}));
  EXPECT_EQ(inputs.friendCount, 18U);
}

}  // namespace
}  // namespace zelvane
