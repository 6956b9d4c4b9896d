#include "app/ui/column/row_view.h"

#include <gtest/gtest.h>

namespace zelvane {
namespace {

using State = ZelvaneState;

const ThemeSpec theme = ThemeSpec::of(ThemeID::c, false);
constexpr Time now = timeAt(1'000'000);

ZelvaneSession session(State state, double secondsAgo = 125) {
  ZelvaneSession session;
  session.id = "s";
  session.title = "제목";
  session.state = state;
  session.since = now - Seconds(secondsAgo);
  session.today = true;
  return session;
}

RowView viewOf(const ZelvaneSession& of, bool expanded = false, bool liveClock = true) {
  const auto size = expanded ? RowSize::big : RowSize::small;
  return rowView(of, {theme, now, size, liveClock});
}

TEST(RowView, TimeOfASmallRowIsTheFirstThatApplies) {
  auto withProgress = session(State::working);
  withProgress.progress = {3, 7};
  auto timeless = session(State::working);
  timeless.since.reset();
  struct Case {
    ZelvaneSession row;
    bool liveClock;
    std::string text;
    bool live;
    Rgb color;
  };
  const Case cases[]{
      {withProgress, true, "3/7", false, theme.sub},
      {session(State::working), true, "2:05", true, theme.fg},
      {session(State::agents), true, "2:05", true, theme.fg},
      {session(State::working), false, "2분째", false, theme.sub},
      {timeless, true, "", false, theme.sub},
      {session(State::done), true, "완료", false, theme.done},
      {session(State::idle), true, "2분 전", false, theme.sub},
  };
  for (const auto& [row, liveClock, text, live, color] : cases) {
    const auto view = viewOf(row, false, liveClock);
    EXPECT_EQ(view.time.text, text);
    EXPECT_EQ(view.liveSince.has_value(), live) << text;
    EXPECT_EQ(view.time.color, color) << text;
  }
}

TEST(RowView, StatusAndSubtitleOfABigRowFollowTheState) {
  struct Case {
    State state;
    const char* status;
    Rgb statusColor, subtitleColor;
  };
  const Case cases[]{
      {State::waiting, "확인 필요", theme.wait, theme.wait},
      {State::working, "작업 중", theme.sub, theme.sub},
      {State::agents, "뒤에서 작업 중", theme.sub, theme.sub},
      {State::done, "완료", theme.done, theme.sub},
      {State::idle, "쉬는 중", theme.sub, theme.sub},
  };
  for (const auto& [state, status, statusColor, subtitleColor] : cases) {
    const auto view = viewOf(session(state), true);
    EXPECT_EQ(view.status, (RowText{status, statusColor, Weight::bold}));
    EXPECT_EQ(view.subtitle.color, subtitleColor) << status;
    EXPECT_EQ(view.time.text, state == State::done || state == State::idle ? "2분 전" : "2분째");
  }
}

TEST(RowView, OnlyAnIdleRowFromBeforeTodayIsDimmed) {
  auto past = session(State::idle);
  past.today = false;
  EXPECT_EQ(viewOf(past).opacity, 0.55);
  EXPECT_EQ(viewOf(past, true).opacity, 1);  // a big row dims its character alone
  EXPECT_TRUE(viewOf(past, true).character.dim);
  EXPECT_EQ(viewOf(session(State::idle)).opacity, 1);
  past.state = State::working;
  EXPECT_EQ(viewOf(past).opacity, 1);
}

TEST(RowView, TextsStayOnOneLine) {
  auto row = session(State::agents);
  row.title = "첫 줄\n둘째 줄";
  row.subtitle = "하나\r\n둘";
  row.model = "Opus 4.1";
  row.effort = "xhigh";
  const auto view = viewOf(row);
  EXPECT_EQ(view.title.text, "첫 줄 둘째 줄");
  EXPECT_EQ(view.label.text, "Background");
  EXPECT_EQ(view.accessibleName, "첫 줄 둘째 줄, 뒤에서 작업 중, 하나 둘");
  EXPECT_EQ(viewOf(row, true).model.text, "Opus 4.1 / XHigh");
  EXPECT_EQ(viewOf(row, true).label.text, "");
}

TEST(RowView, AnotherEffortIsOfferedUntilItsCommandIsCopied) {
  struct Case {
    const char *effort, *suggested;
    bool copied;
    const char *model, *suggestion, *button;
  };
  const Case cases[]{
      {"low", "high", false, "Opus 4.1 / Low", "추천 High", "High로 바꾸기"},
      {"", "xhigh", false, "Opus 4.1", "추천 XHigh", "XHigh로 바꾸기"},
      {"High", "high", false, "Opus 4.1 / High", "", ""},
      {"low", "", false, "Opus 4.1 / Low", "", ""},
      {"low", "high", true, "복사했어요 · 터미널에서 ⌘V, Return", "", ""},
  };
  for (const auto& [effort, suggested, copied, model, suggestion, button] : cases) {
    auto row = session(State::waiting);
    row.model = "Opus 4.1";
    row.effort = effort;
    row.suggestedEffort = suggested;
    const auto view =
        rowView(row, {.theme = theme, .now = now, .size = RowSize::big, .copied = copied});
    EXPECT_EQ(view.model.text, model);
    EXPECT_EQ(view.suggestion.text, suggestion);
    EXPECT_EQ(view.effortButton.value_or(TextButtonLook{}).title, button);
    if (!view.effortButton) continue;
    EXPECT_EQ(view.effortButton->tip, "그 터미널로 이동하고 '/effort " + std::string(suggested) +
                                          "' 를 복사해 둬요. ⌘V, Return 을 누르면 바뀌어요.");
  }
}

TEST(RowView, TheMemosButtonMakesWayForAnEditor) {
  auto row = session(State::working);
  const auto button = [&](std::optional<EditorRoom> editor) {
    const auto view =
        rowView(row, {.theme = theme, .now = now, .size = RowSize::big, .editor = editor});
    return view.memoButton.value_or(TextButtonLook{}).title;
  };
  EXPECT_EQ(button({}), "+ 메모");
  EXPECT_EQ(button(EditorRoom{EditorField::title, 22}), "");
  row.memo = "적은 것";
  EXPECT_EQ(button({}), "메모 고치기");
  EXPECT_FALSE(viewOf(row).memoButton) << "a small row has none";
}

TEST(ProgressShare, StaysBetweenNothingAndAll) {
  EXPECT_EQ(progressShare({0, 0}), 0);
  EXPECT_EQ(progressText({0, 0}), "0/0");
  EXPECT_EQ(progressShare({1, 4}), 0.25);
  EXPECT_EQ(progressShare({9, 4}), 1);
}

}  // namespace
}  // namespace zelvane
