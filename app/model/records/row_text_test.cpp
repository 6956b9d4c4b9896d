#include "app/model/records/row_text.h"

#include <cstdlib>
#include <ctime>
#include <gmock/gmock.h>

namespace zelvane {
namespace {

using Texts = std::vector<std::pair<std::string, std::string>>;

TEST(ModelName, NamesFamilyAndVersion) {
  for (const auto& [id, name] : Texts{{"claude-opus-4-1-20250805", "Opus 4.1"},
                                      {"claude-sonnet-4-5", "Sonnet 4.5"},
                                      {"opus", "Opus"},
                                      {"claude-opus-10", "Opus 10"},
                                      {"claude-opus-100", "Opus"},
                                      {"claude-3-5-sonnet-20241022", "3 5"},
                                      {"claude-claude-opus--5", "Opus 5"},
                                      {"claude-opus-4-8[1m]", "Opus 4"},
                                      {"", ""},
                                      {"claude-", "claude-"}}) {
    EXPECT_EQ(modelName(id), name) << id;
  }
}

TEST(EffortName, Capitalises) {
  for (const auto& [level, name] :
       Texts{{"high", "High"}, {"MEDIUM", "Medium"}, {"XHIGH", "XHigh"}, {"x", "X"}, {"", ""}}) {
    EXPECT_EQ(effortName(level), name);
  }
}

TEST(CleanTitle, DropsTheStatusGlyph) {
  for (const auto& [raw, title] :
       Texts{{"✳ fix the parser", "fix the parser"},
             {"⠐ 작업", "작업"},
             {"✳\uFE0F two scalars, one glyph", "two scalars, one glyph"},
             {"✳ Claude Code", ""},
             {"Claude Code", ""},
             {"✳ ", ""},
             {"✳", "✳"},
             {" ✳  two blanks", "two blanks"},
             {"✳fix", "✳fix"},
             {"\t한글 제목 ", "한글 제목"},
             {"7 tests", "7 tests"},
             {"", ""}}) {
    EXPECT_EQ(cleanTitle(raw), title) << raw;
  }
}

TEST(CleanPrompt, KeepsWhatAPersonTyped) {
  for (const auto& [raw, prompt] :
       Texts{{"  fix\n\nit \r\n now\t", "fix it   now"},
             {" <task-notification>\nreal text", ""},
             {"[Image #1]", ""},
             {"look at [Image #12] and [Pasted text #2 +30 lines] please", "look at  and  please"},
             {"[Image] stays, [image #1] too", "[Image] stays, [image #1] too"},
             {"[Image #1 open", "[Image #1 open"},
             {"첫 줄\u2028둘째 줄", "첫 줄 둘째 줄"},
             {"", ""}}) {
    EXPECT_EQ(cleanPrompt(raw), prompt) << raw;
  }
}

TEST(LocalizedReason, KeepsTextOfOthers) {
  for (const char* reason : {"질문이 있어요", "허락을 기다려요", "질문: 어느 색으로 할까요?",
                             "질문: 100% %@ %d?", "질문:없음", "anything else"}) {
    EXPECT_EQ(localizedReason(reason), reason);
  }
}

TEST(ElapsedText, CountsMinutesHoursAndDays) {
  const Time now = timeAt(2e9);
  struct Case {
    double seconds;
    const char* ongoing;
    const char* past;
  };
  for (const auto& [seconds, ongoing, past] : std::vector<Case>{
           {-100, "막 시작", "방금"},
           {59.9, "막 시작", "방금"},
           {60, "1분째", "1분 전"},
           {3599, "59분째", "59분 전"},
           {3600, "1시간째", "1시간 전"},
           {75 * 60, "1시간째", "1시간 전"},
           {1439 * 60, "23시간째", "23시간 전"},
           {1440 * 60, "1일째", "1일 전"},
           {1e300, "11574074074일째", "11574074074일 전"},
       }) {
    EXPECT_EQ(elapsedText(now - Seconds(seconds), true, now), ongoing) << seconds;
    EXPECT_EQ(elapsedText(now - Seconds(seconds), false, now), past) << seconds;
  }
  EXPECT_EQ(elapsedText(std::nullopt, true, now), "");
}

TEST(WorkingTime, FormatsAClock) {
  for (const auto& [seconds, text] :
       std::vector<std::pair<double, const char*>>{{0, "0:00"},
                                                   {59.9, "0:59"},
                                                   {61, "1:01"},
                                                   {3599, "59:59"},
                                                   {3600, "1:00:00"},
                                                   {-5, "0:00"},
                                                   {86399, "23:59:59"},
                                                   {90061, "25:01:01"}}) {
    EXPECT_EQ(workingTime(Seconds(seconds)), text);
  }
}

/// A time zone for the length of a scope.
class TimeZone {
 public:
  explicit TimeZone(const char* name) {
    setenv("TZ", name, 1);
    tzset();
  }
  ~TimeZone() {
    unsetenv("TZ");
    tzset();
  }
};

Time local(int year, int month, int day, int hour, int minute) {
  std::tm parts{};
  parts.tm_year = year - 1900;
  parts.tm_mon = month - 1;
  parts.tm_mday = day;
  parts.tm_hour = hour;
  parts.tm_min = minute;
  parts.tm_isdst = -1;
  return timeAt(static_cast<double>(std::mktime(&parts)));
}

TEST(TodayStart, IsFourOClock) {
  // Rules in POSIX form need no zone files: the last makes the clocks jump over 04:00 in spring and
  // repeat it in autumn.
  for (const char* zone :
       {"KST-9", "CET-1CEST,M3.5.0,M10.5.0/3", "XXX0YYY,M3.5.0/3:30,M10.5.0/4:30"}) {
    const TimeZone timeZone(zone);
    EXPECT_EQ(todayStart(local(2026, 6, 10, 3, 59)), local(2026, 6, 9, 4, 0)) << zone;
    EXPECT_EQ(todayStart(local(2026, 6, 10, 4, 0)), local(2026, 6, 10, 4, 0)) << zone;
    EXPECT_EQ(todayStart(local(2026, 6, 10, 4, 0) + Seconds(0.5)), local(2026, 6, 10, 4, 0))
        << zone;
    EXPECT_EQ(todayStart(local(2026, 1, 1, 2, 0)), local(2025, 12, 31, 4, 0)) << zone;
    EXPECT_EQ(todayStart(local(2026, 3, 1, 0, 30)), local(2026, 2, 28, 4, 0)) << zone;
  }
}

TEST(TodayStart, FollowsTheClocksWhenTheyChange) {
  {
    const TimeZone skipped("XXX0YYY,M3.5.0/3:30,M10.5.0");  // 2026-03-29: 03:30 becomes 04:30
    const Time change = timeAt(1774755000);                 // 03:30 before it
    EXPECT_EQ(todayStart(local(2026, 3, 29, 12, 0)), change);
    EXPECT_EQ(todayStart(change - Seconds(1)), local(2026, 3, 28, 4, 0));
  }
  {
    const TimeZone repeated("XXX0YYY,M3.5.0,M10.5.0/4:30");  // 2026-10-25: 04:30 becomes 03:30
    const Time first = timeAt(1792897200);                   // 04:00 by summer time
    EXPECT_EQ(todayStart(local(2026, 10, 25, 12, 0)), first);
    EXPECT_EQ(todayStart(first + Seconds(45 * 60)), first) << "when the clock shows 03:45 again";
  }
}

}  // namespace
}  // namespace zelvane
