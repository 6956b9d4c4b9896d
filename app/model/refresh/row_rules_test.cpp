#include "app/model/refresh/row_rules.h"

#include <gmock/gmock.h>

namespace zelvane {
namespace {

const Time now = timeAt(1'800'000'000);
const Time updated = now - Seconds(50);

ClaudeProc proc(const std::string& status) { return {1, "s", "/p", status, updated}; }

HookRecord hook(const std::string& state, std::optional<Time> doneAt = {}) {
  HookRecord record;
  record.state = state;
  record.doneAt = doneAt;
  return record;
}

HookRecord withAgents(std::int64_t count, std::optional<Time> doneAt) {
  auto record = hook("done", doneAt);
  record.bgAgents = count;
  return record;
}

HookRecord withShells(std::vector<double> agesInSeconds) {
  HookRecord record;
  for (const double age : agesInSeconds) {
    record.bgShellFirstSeen.push_back(secondsSince1970(now) - age);
  }
  return record;
}

TEST(BackgroundWork, CountsAgentsForHalfAnHourAndShellsForAnHour) {
  const auto agentsAndShell = [] {
    auto record = withShells({10});
    record.bgAgents = 1;
    return record;
  };
  struct Case {
    const char* what;
    const char* status;
    std::optional<HookRecord> hook;
    bool works;
  };
  const std::vector<Case> cases{
      {"no record", "shell", std::nullopt, false},
      {"agent just after the turn", "idle", withAgents(1, now - Seconds(1799)), true},
      {"agent half an hour after it", "idle", withAgents(1, now - Seconds(1800)), false},
      {"agent without an end of turn", "idle", withAgents(1, std::nullopt), false},
      {"agent and shell status", "shell", withAgents(1, std::nullopt), true},
      {"no agent", "idle", withAgents(0, now), false},
      {"young shell", "shell", withShells({3599}), true},
      {"old shell", "shell", withShells({3600}), false},
      {"one of several is young", "shell", withShells({9000, 600, 7200}), true},
      {"young shell, but the client says idle", "idle", withShells({10}), false},
      {"no shell seen", "shell", withShells({}), false},
      {"old agent, but a young shell", "shell", agentsAndShell(), true},
  };
  for (const auto& [what, status, record, works] : cases) {
    EXPECT_EQ(backgroundWork(proc(status), record, now), works) << what;
  }
}

TEST(RowState, FirstRuleThatAppliesWins) {
  auto waitingHook = hook("waiting");
  waitingHook.updatedAt = now - Seconds(5);
  auto turn = hook("");
  turn.workingSince = now - Seconds(30);
  auto doneTurn = hook("done", now - Seconds(9));
  doneTurn.workingSince = now - Seconds(40);
  const Time d = now - Seconds(9);

  struct Case {
    const char* what;
    const char* status;
    std::optional<HookRecord> hook;
    std::optional<Time> acked;
    InFront inFront;
    RowState expected;
  };
  using enum ZelvaneState;
  const auto no = InFront::no;
  const std::vector<Case> cases{
      {"client waits, no record", "waiting", {}, {}, no, {waiting, updated}},
      {"client waits, record silent", "waiting", turn, {}, no, {waiting, updated}},
      {"record waits", "idle", waitingHook, {}, no, {waiting, now - Seconds(5)}},
      {"record waits, without a time", "idle", hook("waiting"), {}, no, {waiting, {}}},
      {"both wait", "waiting", waitingHook, {}, no, {waiting, now - Seconds(5)}},
      {"record waits while busy", "busy", waitingHook, {}, no, {waiting, now - Seconds(5)}},
      {"busy, no record", "busy", {}, {}, no, {working, updated}},
      {"busy since the turn began", "busy", turn, {}, no, {working, now - Seconds(30)}},
      {"busy, whatever the record says", "busy", doneTurn, {}, no, {working, now - Seconds(40)}},
      {"agents since the end of the turn",
       "idle",
       withAgents(2, d),
       {},
       no,
       {ZelvaneState::agents, d}},
      {"shells without an end of turn",
       "shell",
       withShells({60}),
       {},
       no,
       {ZelvaneState::agents, updated}},
      {"done, never looked at", "idle", hook("done", d), {}, no, {done, d}},
      {"done, looked at before", "idle", hook("done", d), d - Seconds(1), no, {done, d}},
      {"done, looked at just then", "idle", hook("done", d), d, no, {idle, updated}},
      {"done, looked at later", "idle", hook("done", d), now, no, {idle, updated}},
      {"done in the tab in front",
       "idle",
       hook("done", d),
       {},
       InFront::yes,
       {idle, updated, true}},
      {"seen already, in front", "idle", hook("done", d), now, InFront::yes, {idle, updated}},
      {"done at no time", "idle", hook("done"), {}, no, {idle, updated}},
      {"done in 1970", "idle", hook("done", timeAt(0)), {}, no, {idle, updated}},
      {"old shell", "shell", withShells({9000}), {}, no, {idle, updated}},
      {"another word", "sleeping", hook("paused", d), {}, no, {idle, updated}},
      {"nothing known", "idle", {}, {}, no, {idle, updated}},
  };
  for (const auto& [what, status, record, acked, inFront, expected] : cases) {
    EXPECT_EQ(rowState(proc(status), record, acked, inFront, now), expected) << what;
  }
}

}  // namespace
}  // namespace zelvane
