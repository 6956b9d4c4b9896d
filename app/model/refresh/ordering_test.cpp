#include "app/model/refresh/ordering.h"

#include <gmock/gmock.h>

namespace zelvane {
namespace {

using testing::ElementsAre;
using enum ZelvaneState;

ZelvaneSession row(const std::string& id, ZelvaneState state, std::optional<double> since,
                   bool today = true) {
  ZelvaneSession session;
  session.id = id;
  session.state = state;
  if (since) session.since = timeAt(*since);
  session.today = today;
  return session;
}

std::vector<std::string> ordered(std::vector<ZelvaneSession> rows,
                                 const std::vector<std::string>& pins = {}) {
  orderRows(rows, pins);
  std::vector<std::string> ids;
  for (const auto& session : rows) ids.push_back(session.id);
  return ids;
}

TEST(OrderRows, ByUrgencyThenNewestFirst) {
  EXPECT_THAT(
      ordered({row("old", idle, 1, false), row("idle", idle, 100), row("done", done, 5),
               row("agents", agents, 5), row("working", working, 5), row("waiting", waiting, 5)}),
      ElementsAre("waiting", "working", "agents", "done", "idle", "old"));
  EXPECT_THAT(ordered({row("none", idle, {}, false), row("early", idle, 1, false),
                       row("late", idle, 2, false), row("today", idle, 0, true)}),
              ElementsAre("today", "late", "early", "none"));
}

TEST(OrderRows, KeepsTheOrderOfTies) {
  EXPECT_THAT(ordered({row("b", working, 5), row("a", working, 5), row("c", working, 5)}),
              ElementsAre("b", "a", "c"));
}

TEST(OrderRows, PinsCountOnlyWithinTheirGroup) {
  const std::vector<ZelvaneSession> rows{row("w", working, 1),    row("i1", idle, 9),
                                         row("i2", idle, 8),      row("d", done, 7),
                                         row("wait", waiting, 3), row("g", agents, 2)};
  EXPECT_THAT(ordered(rows, {"i2", "i1"}), ElementsAre("wait", "w", "g", "i2", "i1", "d"));
  EXPECT_THAT(ordered(rows, {"g", "i1", "w"}), ElementsAre("g", "w", "wait", "i1", "d", "i2"));
  EXPECT_THAT(ordered(rows, {"gone"}), ElementsAre("wait", "w", "g", "d", "i1", "i2"));
}

TEST(OrderRows, TwoProcessesOfOnePinnedSessionKeepTheirOrder) {
  auto first = row("s", idle, 1);
  auto second = row("s", idle, 2);
  first.pid = 1;
  second.pid = 2;
  std::vector<ZelvaneSession> rows{first, second};
  orderRows(rows, {"s"});
  EXPECT_EQ(rows.front().pid, 1);
}

}  // namespace
}  // namespace zelvane
