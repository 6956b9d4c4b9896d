#include <gmock/gmock.h>

#include "app/model/snapshots/burst.h"
#include "app/model/snapshots/restore_outcome.h"
#include "app/model/snapshots/snapshot.h"

namespace zelvane {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr double start = 1'800'000'000;

std::vector<ZelvaneSession> rowsOf(const std::string& ids) {
  std::vector<ZelvaneSession> rows;
  for (const char id : ids) {
    ZelvaneSession row;
    row.id = id;
    row.pid = id;
    row.cwd = "/p";
    row.title = "t";
    rows.push_back(row);
  }
  return rows;
}

std::string idsOf(const Json& items) {
  std::string ids;
  for (const auto& item : items) ids += item.at("sid").get<std::string>();
  return ids;
}

TEST(Autosnapshot, IsWrittenWhenRowsChangeAndElseEveryTenSeconds) {
  SnapshotMemory memory;
  struct Step {
    double at;
    std::string rows;
    std::string written;  ///< "-" when it is not
  };
  const Step steps[] = {{0, "", ""},
                        {1, "", "-"},
                        {2, "ab", "ab"},
                        {3, "ab", "-"},
                        {11.9, "ab", "-"},
                        {12, "ab", "ab"},
                        {13, "b", "ba"},
                        {13.5, "bc", "bca"},
                        {86'412, "c", "cb"},
                        {86'413, "c", "-"},
                        {86'414, "", "c"},
                        // the clock is set back
                        {80'000, "", "c"}};
  for (const auto& step : steps) {
    const auto written = autosnapshot(rowsOf(step.rows), memory, timeAt(start + step.at));
    EXPECT_EQ(written ? idsOf(Json::parse(*written).at("items")) : "-", step.written) << step.at;
  }
}

TEST(Autosnapshot, KeepsWhatARestoreNeeds) {
  SnapshotMemory memory;
  auto rows = rowsOf("a");
  rows[0].state = ZelvaneState::working;
  const auto snapshot = Json::parse(R"({"v": 2, "saved_at": 1800000000.0, "items": [{"sid": "a",
      "cwd": "/p", "title": "t", "busy": true, "last_seen": 1800000000.0}]})");
  EXPECT_EQ(autosnapshot(rows, memory, timeAt(start)), snapshot.dump(2));
}

TEST(CheckReboot, OffersWhatWasAliveAtTheEnd) {
  const auto snapshot = [](const char* quit) {
    return Json::parse(R"({"saved_at": 1000, "items": [{"sid": "a", "last_seen": 1000},
        {"sid": "b", "last_seen": 880}, {"sid": "c", "last_seen": 879}, {"sid": "d"}])" +
                       std::string(quit) + "}");
  };
  struct Case {
    const char* what;
    std::optional<Json> snapshot;
    std::optional<Json> handled;
    double boot;
    std::string tracked;
    std::string offered;
  };
  const Case cases[] = {
      {"no snapshot", {}, {}, 2000, "", "-"},
      {"the application was started anew", snapshot(""), {}, 1000, "abcd", "-"},
      {"an item without a time counts as just seen", snapshot(""), {}, 1001, "", "d"},
      {"quit long before", snapshot(R"(, "app_quit": 1001)"), {}, 1902, "", "-"},
      {"quit shortly before", snapshot(R"(, "app_quit": 1001)"), {}, 1901, "", "d"},
      {"already handled", snapshot(""), Json{{"saved_at", 1000}}, 2000, "", "-"},
      {"an older reboot was handled", snapshot(""), Json{{"saved_at", 999}}, 2000, "", "d"},
      {"no items", Json::parse(R"({"saved_at": 1, "items": []})"), {}, 2000, "", "-"},
      {"not a snapshot", Json::parse(R"({"saved_at": "x", "items": {}})"), {}, 2000, "", "-"},
      {"items that are none",
       Json::parse(R"({"saved_at": 9, "items": [3, {"sid": 4}]})"),
       {},
       5,
       "",
       "-"},
      {"the clock was set back after one had ended",
       Json::parse(R"({"saved_at": 1000, "items": [{"sid": "a", "last_seen": 1500},
           {"sid": "b", "last_seen": 1000}]})"),
       {},
       2000,
       "",
       "b"},
      {"all within two minutes",
       Json::parse(R"({"saved_at": 1000, "items": [{"sid": "a", "last_seen": 1000},
           {"sid": "b", "last_seen": 880}, {"sid": "c", "last_seen": 879}]})"),
       {},
       2000,
       "",
       "ab"},
  };
  for (const auto& test : cases) {
    const auto found = checkReboot(test.snapshot, test.handled, timeAt(test.boot), timeAt(3000));
    std::string tracked;
    for (const auto& [id, item] : found.tracked) tracked += id;
    EXPECT_EQ(tracked, test.tracked) << test.what;
    EXPECT_EQ(found.rebootSnapshot ? idsOf(found.rebootSnapshot->at("items")) : "-", test.offered)
        << test.what;
  }
}

TEST(PendingItems, LeavesOutWhatCannotOrNeedNotBeReopened) {
  const auto snapshot = Json::parse(R"({"items": [{"sid": "a", "cwd": "/there"}, {"sid": "b",
      "cwd": "/gone"}, {"sid": "c", "cwd": "/there"}, {"sid": "d"}, 7, {"cwd": "/there"}]})");
  const auto exists = [](const std::string& folder) { return folder == "/there"; };
  EXPECT_EQ(idsOf(pendingItems(snapshot, {"c"}, exists)), "a");
  EXPECT_THAT(pendingItems(std::nullopt, {}, exists), IsEmpty());
  EXPECT_THAT(pendingItems(Json::object(), {}, exists), IsEmpty());
}

TEST(DetectBurst, ReportsTabsThatCloseTogether) {
  struct Step {
    double at;
    std::string rows;
    std::string closed;  ///< "-" for no burst
    std::string alive{};
  };
  struct Case {
    const char* what;
    std::vector<Step> steps;
  };
  const Case cases[] = {
      {"one tab", {{0, "ab", "-"}, {1, "a", "-"}, {5, "", "-"}}},
      {"two at once", {{0, "abc", "-"}, {1, "c", "ab"}, {2, "c", "-"}}},
      {"two within three seconds", {{0, "abc", "-"}, {1, "bc", "-"}, {3.9, "c", "ab"}}},
      {"one just too late", {{0, "abc", "-"}, {1, "bc", "-"}, {4, "c", "-"}}},
      {"an earlier one joins", {{0, "abcd", "-"}, {1, "bcd", "-"}, {9, "d", "abc"}}},
      {"a later one joins", {{0, "abcd", "-"}, {1, "cd", "ab"}, {9, "d", "c"}}},
      {"one that comes after the window counts anew",
       {{0, "abcd", "-"}, {1, "cd", "ab"}, {13, "d", "-"}}},
      {"a row that is missing for one pass",
       {{0, "abc", "-"}, {1, "c", "-", "ab"}, {2, "abc", "-"}}},
      {"the clock is set back between two that close apart",
       {{0, "abc", "-"}, {1, "bc", "-"}, {-3000, "bc", "-"}, {-2900, "c", "-"}}},
      {"the clock is set back after a burst",
       {{0, "abc", "-"}, {1, "c", "ab"}, {-3000, "c", "-"}, {-2900, "", "-"}}},
  };
  for (const auto& [what, steps] : cases) {
    BurstMemory memory;
    for (const auto& step : steps) {
      const auto alive = [&](std::int32_t pid) {
        return step.alive.find(static_cast<char>(pid)) != std::string::npos;
      };
      const auto burst = detectBurst(rowsOf(step.rows), memory, alive, timeAt(start + step.at));
      EXPECT_EQ(burst ? idsOf(*burst) : "-", step.closed) << what << " at " << step.at;
      for (const auto& item : burst.value_or(std::vector<Json>{})) {
        EXPECT_EQ(item.at("closed_at"), start + step.at);
      }
    }
  }
}

TEST(RestoreProblem, FollowsTheSummary) {
  const std::string generic =
      "여는 데 문제가 있었어요. 터미널에서 zelvane restore 로도 열 수 있어요.";
  struct Case {
    std::string output;
    std::optional<std::string> expected;
  };
  const Case cases[] = {
      {"", generic},
      {"완료: 3개를 열었어요. 실패 0\n", std::nullopt},
      {"a\n완료: 실패 5\n완료: 2개, 실패 1\nend",
       "1개를 열지 못했어요. 다시 누르면 남은 것만 열어요."},
      {"완료: 다 됐어요", generic},
      {" 완료: 실패 0", generic},
      {"되살릴 탭이 없어요\n", std::nullopt},
      {"완료: 실패 99999999999999999999999", generic},
  };
  for (const auto& [output, expected] : cases)
    EXPECT_EQ(restoreProblem(output), expected) << output;
}

}  // namespace
}  // namespace zelvane
