#include "cli/listing_text.h"

#include <gmock/gmock.h>

#include "core/unicode.h"

namespace zelvane::cli {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using Lines = std::vector<std::string>;

constexpr Time now = timeAt(2e9);

ZelvaneSession row(ZelvaneState state, std::string title, std::string subtitle, int minutes,
                   std::string cwd) {
  ZelvaneSession session;
  session.state = state;
  session.title = std::move(title);
  session.subtitle = std::move(subtitle);
  session.since = now - Seconds(60 * minutes);
  session.cwd = std::move(cwd);
  return session;
}

Listing sample() {
  Listing listing{.at = now, .home = "/home/me"};
  listing.sessions = {
      row(ZelvaneState::waiting, "결제 웹훅 재시도", "허락을 기다려요", 2, "/home/me/pay"),
      row(ZelvaneState::working, "photo upload", "썸네일 캐시 확인 중", 75, "/srv/photo"),
      row(ZelvaneState::idle, "~", "", 2000, "/home/me"),
  };
  listing.sessions[1].progress = {2, 5};
  listing.sessions[2].pinned = true;
  return listing;
}

TEST(ListingText, AlignsColumnsAlsoOfWideCharacters) {
  EXPECT_THAT(
      listingText(sample(), {}),
      ElementsAre(
          "작업 중 2",  //
          "1        확인 필요  2분째    결제 웹훅 재시도  허락을 기다려요          ~/pay",
          "2        작업 중    1시간째  photo upload      2/5 썸네일 캐시 확인 중  /srv/photo",
          "",  //
          "쉬는 중 1",
          "3  고정  쉬는 중    1일 전   ~                                          ~"));
}

TEST(ListingText, FitsTheTerminal) {
  EXPECT_THAT(listingText(sample(), {.columns = 64}),
              ElementsAre("작업 중 2",  //
                          "1        확인 필요  2분째    결제 웹훅 재시도  허락을 기다려요",
                          "2        작업 중    1시간째  photo upload      2/5 썸네일 캐시 …", "",
                          "쉬는 중 1",  //
                          "3  고정  쉬는 중    1일 전   ~"));
  EXPECT_THAT(listingText(sample(), {.columns = 30}),
              ElementsAre("작업 중 2",                       //
                          "1  결제 웹훅 재시도",             //
                          "   확인 필요 · 2분째 · 허락을…",  //
                          "2  photo upload",                 //
                          "   작업 중 · 1시간째 · 2/5 썸…",  //
                          "",                                //
                          "쉬는 중 1",                       //
                          "3  ~",                            //
                          "   쉬는 중 · 고정 · 1일 전"));
}

TEST(ListingText, NoLineIsWiderThanTheTerminal) {
  auto listing = sample();
  listing.pendingRestore = {Json::object()};
  for (int i = 0; i < 9; ++i) listing.sessions.push_back(listing.sessions.back());
  listing.sessions[5].title = std::string(300, 'x');
  listing.sessions[6].subtitle = listing.sessions[6].cwd = std::string(300, '/') + "가";
  listing.sessions[7].state = ZelvaneState::agents;
  listing.sessions[8] = ZelvaneSession();
  for (int columns = 1; columns < 400; ++columns) {
    for (const auto& line : listingText(listing, {.columns = columns})) {
      ASSERT_LE(displayWidth(line), columns) << line;
      ASSERT_FALSE(line.ends_with(' ')) << line;
    }
  }
}

TEST(ListingText, NumbersAlignOnTheRight) {
  Listing listing{.at = now, .home = "/"};
  listing.sessions.assign(10, row(ZelvaneState::idle, "t", "", 0, "/"));
  const auto lines = listingText(listing, {});
  EXPECT_THAT(lines[1], HasSubstr(" 1  쉬는 중  방금  t  /"));
  EXPECT_THAT(lines[10], HasSubstr("10  쉬는 중  방금  t  /"));
}

TEST(ListingText, ColoursOnlyWhenAskedAndAroundTheSameText) {
  const auto withoutColours = [](std::string line) {
    for (auto at = line.find('\x1b'); at != line.npos; at = line.find('\x1b')) {
      line.erase(at, line.find('m', at) + 1 - at);
    }
    return line;
  };
  for (const auto columns : {std::optional<int>(), std::optional(40), std::optional(80)}) {
    const auto plain = listingText(sample(), {.columns = columns});
    auto coloured = listingText(sample(), {.columns = columns, .colours = Colours::yes});
    EXPECT_NE(coloured, plain);
    for (auto& line : coloured) line = withoutColours(line);
    EXPECT_EQ(coloured, plain);
    for (const auto& line : plain) EXPECT_EQ(line.find('\x1b'), line.npos);
  }
}

TEST(ListingText, OutsideTextCannotSteerTheTerminal) {
  Listing listing{.at = now, .home = "/home/me"};
  listing.sessions = {row(ZelvaneState::idle, "a\x1b[2Jb", "c\nd", 0, "/e\x07\xff")};
  EXPECT_THAT(listingText(listing, {}),
              ElementsAre("쉬는 중 1", "1  쉬는 중  방금  a [2Jb  c d  /e \uFFFD"));
}

TEST(ListingText, ShortensOnlyTheHomeFolder) {
  struct Case {
    const char* home;
    const char* cwd;
    const char* shown;
  };
  for (const auto& [home, cwd, shown] :
       std::vector<Case>{{"/home/me", "/home/me", "  ~"},
                         {"/home/me", "/home/me/a", "  ~/a"},
                         {"/home/me", "/home/meow", "  /home/meow"},
                         {"/", "/srv", "  /srv"}}) {
    Listing listing{.at = now, .home = home};
    listing.sessions = {row(ZelvaneState::idle, "t", "", 0, cwd)};
    EXPECT_THAT(listingText(listing, {}).back(), testing::EndsWith(shown));
  }
}

TEST(ListingText, TellsWhatToDoWhenThereIsNothing) {
  const std::string text = "터미널 탭에서 claude 를 실행하면 여기에 나타나요";
  Listing listing{.at = now, .home = "/"};
  EXPECT_THAT(listingText(listing, {}), ElementsAre(text));
  EXPECT_THAT(listingText(listing, {.columns = 40}),
              ElementsAre("터미널 탭에서 claude 를 실행하면 여기에", "나타나요"));

  listing.recentClosed = {Json::object()};
  EXPECT_THAT(
      listingText(listing, {}),
      ElementsAre("방금 한꺼번에 닫힌 작업 1개를 하던 대화 그대로 다시 열 수 있어요.", "", text));
  listing.pendingRestore = {Json::object(), Json::object()};
  EXPECT_THAT(
      listingText(listing, {}),
      ElementsAre("재부팅 전에 하던 작업 2개를 하던 대화 그대로 이어서 열 수 있어요.", "", text));
}

}  // namespace
}  // namespace zelvane::cli
