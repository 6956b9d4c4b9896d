#include "app/model/refresh/offers.h"

#include <gmock/gmock.h>

namespace zelvane {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

const Time now = timeAt(10'000);

Json item(const std::string& sid, double age) {
  return {{"sid", sid}, {"closed_at", secondsSince1970(now) - age}};
}

std::vector<ZelvaneSession> rows(const std::vector<std::string>& ids) {
  std::vector<ZelvaneSession> list;
  for (const auto& id : ids) list.emplace_back().id = id;
  return list;
}

TEST(RecentClosed, TakesABurstOnceAndForgetsWhatIsBackOrOld) {
  const std::vector<Json> before{item("a", 100), item("b", 599), item("c", 600), item("d", 10)};
  const std::vector<Json> burst{item("a", 1), item("e", 1), item("e", 2)};
  EXPECT_THAT(recentClosedAfter(before, burst, false, rows({"d"}), now),
              ElementsAre(before[0], before[1], burst[1]));
  EXPECT_THAT(recentClosedAfter({}, burst, true, {}, now), IsEmpty())
      << "the offer is still dismissed";
  EXPECT_THAT(
      recentClosedAfter({{{"sid", "x"}}, {{"sid", "y"}, {"closed_at", "z"}}}, {}, false, {}, now),
      IsEmpty())
      << "without a time of closing";
}

TEST(EditingAfter, ClosesTheEditorOfAVanishedRow) {
  const auto live = rows({"s1", "a:b"});
  const std::vector<std::pair<std::optional<std::string>, bool>> cases{
      {"title:s1", true},    {"memo:s1", true}, {"memo:a:b", true},
      {"title:gone", false}, {"title:", false}, {"title", false}};
  for (const auto& [editing, stays] : cases) {
    EXPECT_EQ(editingAfter(editing, live), stays ? editing : std::nullopt) << *editing;
  }
  EXPECT_FALSE(editingAfter(std::nullopt, live));
}

TEST(ClockNeeded, OnlyForWorkThatSomebodySees) {
  auto list = rows({"a", "b"});
  for (const auto& [state, needed] :
       std::vector<std::pair<ZelvaneState, bool>>{{ZelvaneState::waiting, false},
                                                  {ZelvaneState::working, true},
                                                  {ZelvaneState::agents, true},
                                                  {ZelvaneState::done, false},
                                                  {ZelvaneState::idle, false}}) {
    list[1].state = state;
    EXPECT_EQ(clockNeeded(true, list), needed);
    EXPECT_FALSE(clockNeeded(false, list));
  }
}

}  // namespace
}  // namespace zelvane
