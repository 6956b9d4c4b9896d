#include "app/model/family/assign_friends.h"

#include <gmock/gmock.h>

namespace zelvane {
namespace {

using testing::ElementsAre;
using testing::Pair;

const Time now = timeAt(1'800'000'000);
const double nowSeconds = 1'800'000'000;

using Ids = std::vector<std::string>;
using FriendOf = std::map<std::string, std::int64_t>;

std::size_t lowest(std::size_t) { return 0; }
std::size_t highest(std::size_t below) { return below - 1; }

FriendOf after(const Ids& ids, const std::set<std::string>& before, std::size_t count,
               const FriendOf& remembered, const Random& random = lowest) {
  FriendMemory memory{remembered, {}};
  assignFriends(ids, before, count, memory, random, now);
  return memory.friendOf;
}

TEST(AssignFriends, GivesFreeOnesAndLeavesEachItsOwn) {
  struct Case {
    std::string what;
    Ids ids;
    std::set<std::string> before;
    std::size_t count;
    FriendOf remembered, result;
    Random random = lowest;
  };
  const std::vector<Case> cases = {
      {"free ones", {"a", "b", "c"}, {}, 3, {}, {{"a", 0}, {"b", 1}, {"c", 2}}},
      {"others of them", {"a", "b", "c"}, {}, 4, {}, {{"a", 3}, {"b", 2}, {"c", 1}}, highest},
      {"between taken ones",
       {"a", "b", "c"},
       {},
       4,
       {{"a", 0}, {"b", 2}},
       {{"a", 0}, {"b", 2}, {"c", 3}},
       highest},
      {"more sessions than characters",
       {"a", "b", "c", "d"},
       {"a", "b", "c"},
       3,
       {{"a", 0}, {"b", 1}, {"c", 2}},
       {{"a", 0}, {"b", 1}, {"c", 2}, {"d", 2}},
       highest},
      {"a shared one stays, whatever the order",
       {"d", "a", "b", "c"},
       {"a", "b", "c", "d"},
       3,
       {{"a", 0}, {"b", 1}, {"c", 2}, {"d", 2}},
       {{"a", 0}, {"b", 1}, {"c", 2}, {"d", 2}}},
      {"after a restart, too",
       {"a", "b", "c"},
       {},
       2,
       {{"a", 0}, {"b", 1}, {"c", 1}},
       {{"a", 0}, {"b", 1}, {"c", 1}}},
      {"one that ended leaves its own to the next",
       {"a", "n"},
       {"a", "b"},
       2,
       {{"a", 0}, {"b", 1}},
       {{"a", 0}, {"b", 1}, {"n", 1}}},
      {"who ran before comes first",
       {"new", "old"},
       {"old"},
       2,
       {{"new", 1}, {"old", 1}},
       {{"new", 0}, {"old", 1}}},
      {"who is remembered, before one that is not",
       {"new", "old"},
       {},
       2,
       {{"old", 0}},
       {{"new", 1}, {"old", 0}}},
      {"no characters", {"a", "b"}, {}, 0, {}, {{"a", 0}, {"b", 0}}},
      {"a family that shrank, and nonsense",
       {"a", "b"},
       {"a"},
       2,
       {{"a", 7}, {"b", -1}},
       {{"a", 0}, {"b", 1}}},
      {"one session in two processes", {"a", "a", "b"}, {}, 2, {{"a", 0}}, {{"a", 0}, {"b", 1}}},
  };
  for (const auto& [what, ids, before, count, remembered, result, random] : cases) {
    EXPECT_EQ(after(ids, before, count, remembered, random), result) << what;
    const std::set<std::string> live(ids.begin(), ids.end());
    EXPECT_EQ(after(ids, live, count, result, highest), result) << what << ", and stays so";
  }
}

TEST(AssignFriends, ForgetsAfterThirtyDays) {
  const double days30 = 2'592'000;
  FriendMemory memory{{{"recent", 0}, {"old", 1}, {"live", 2}},
                      {{"recent", nowSeconds - days30},
                       {"old", nowSeconds - days30 - 1},
                       {"live", 0},
                       {"stray", 0}}};
  EXPECT_EQ(assignFriends({"live"}, {}, 3, memory, lowest, now), FriendsChange::characters);
  EXPECT_THAT(memory.friendOf, ElementsAre(Pair("live", 2), Pair("recent", 0)));
  EXPECT_THAT(memory.friendSeen,
              ElementsAre(Pair("live", nowSeconds), Pair("recent", nowSeconds - days30)));
}

TEST(AssignFriends, SavesChangesAtOnceAndTimesOnceAMinute) {
  FriendMemory memory;
  const Time minute = timeAt(1'800'000'000);
  const auto savedWith = [&](const Ids& ids, int second) {
    const Time then = minute + Seconds(second);
    return friendsToSave(assignFriends(ids, {}, 3, memory, lowest, then), then);
  };
  EXPECT_TRUE(savedWith({"a"}, 30)) << "it got a character";
  for (const auto& [second, save] : {std::pair(0, true), {9, true}, {10, false}, {59, false}}) {
    EXPECT_EQ(savedWith({"a"}, second), save) << second;
  }
  EXPECT_FALSE(savedWith({}, 0)) << "nothing to save";
}

}  // namespace
}  // namespace zelvane
