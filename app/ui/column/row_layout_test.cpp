#include "app/ui/column/row_layout.h"

#include <QtGui/QFontMetricsF>
#include <gtest/gtest.h>

#include "app/ui/column/terminal_button.h"

namespace zelvane {
namespace {

ZelvaneSession fullSession(const std::string& text) {
  ZelvaneSession session;
  session.id = "s";
  session.title = session.subtitle = text;
  session.memo = text;
  session.model = text;
  session.suggestedEffort = text;
  session.state = ZelvaneState::agents;
  session.since = timeAt(0);
  session.progress = {123, 456};
  return session;
}

/// Of a row that nobody opened.
RowView viewAt(const ZelvaneSession& session, double seconds) {
  return rowView(session, {.now = timeAt(seconds), .size = rowSize(session, {})});
}

std::string repeated(const std::string& text, int times) {
  std::string all;
  for (int i = 0; i < times; ++i) all += text;
  return all;
}

/// Whatever the texts are, nothing leaves the row or lies on something else.
TEST(RowLayout, NothingOverlapsWhateverTheTexts) {
  const std::string texts[]{
      "짧은 제목",
      repeated("아주 긴 한글 제목 ", 500),
      repeated("Donaudampfschifffahrtsgesellschaft", 100),
      repeated("👩‍👩‍👧‍👦🏳️‍🌈", 100),
      repeated("שלום עולם مرحبا ", 50),
      "\xe2\x80\xae"
      "reversed",
      repeated("\n", 30),
  };
  struct Form {
    bool pinned;
    std::optional<EditorRoom> editor;
  };
  const Form forms[]{{false, {}},
                     {true, {}},
                     {true, EditorRoom{EditorField::title, 22}},
                     {false, EditorRoom{EditorField::memo, 134}}};
  for (const auto& text : texts) {
    for (const int width : {280, 480}) {
      for (const auto& [pinned, editor] : forms) {
        auto session = fullSession(text);
        session.pinned = pinned;
        const auto size = pinned || editor ? RowSize::big : RowSize::small;
        const auto view = rowView(session, {.now = timeAt(9e9), .size = size, .editor = editor});
        const auto layout = rowLayout(view, width);
        const QRect row(0, 0, width, layout.height);
        std::vector<QRect> boxes{layout.character};
        for (const auto& placed : layout.texts) {
          boxes.push_back(placed.box);
          EXPECT_LE(QFontMetricsF(placed.font).horizontalAdvance(placed.text),
                    placed.box.width() + 1);
        }
        for (const QRect& box :
             {layout.time.box, layout.noteSymbol, layout.progressTrack, layout.tile, layout.editor,
              layout.memoButton, layout.effortButton}) {
          if (!box.isEmpty()) boxes.push_back(box);
        }
        for (std::size_t i = 0; i < boxes.size(); ++i) {
          EXPECT_TRUE(row.contains(boxes[i])) << text.substr(0, 40) << " box " << i;
          for (std::size_t j = 0; j < i; ++j) {
            EXPECT_FALSE(boxes[i].intersects(boxes[j])) << text.substr(0, 40) << i << " " << j;
          }
        }
      }
    }
  }
}

TEST(RowLayout, LongTextsAreCutAndTheTimeStaysWhole) {
  auto session = fullSession(repeated("긴 제목 ", 40));
  session.progress.reset();
  const auto layout = rowLayout(viewAt(session, 3605), 280);
  EXPECT_TRUE(layout.texts.front().text.endsWith(QChar(0x2026)));
  EXPECT_EQ(layout.time.text, "1:00:05");
}

TEST(RowLayout, AVeryLongMemoEndsWithAnEllipsis) {
  ZelvaneSession session;
  session.pinned = true;
  session.memo = "a" + repeated("👩", 1500);  // its limit lies within a character
  const auto layout = rowLayout(viewAt(session, 60), 280);
  QString last;
  for (const auto& placed : layout.texts) {
    if (layout.memoGround.contains(placed.box)) last = placed.text;
  }
  EXPECT_TRUE(last.endsWith(QString::fromUtf8("👩…"))) << last.toStdString();
}

/// A small one that moves does so only where the title is whole then.
TEST(RowLayout, ATileMakesWayForATitleThatWouldBeCut) {
  struct Case {
    int width, titleLength;
    ZelvaneState state;
    bool pinned, tile;
  };
  using enum ZelvaneState;
  // A syllable is as wide as the font is high: 13 in a small row, 15 in a big one.
  const Case cases[]{
      {280, 8, working, false, true},   {280, 11, working, false, false},
      {280, 13, working, false, true},  {280, 13, idle, false, false},
      {380, 19, working, false, false}, {380, 30, working, false, true},
      {280, 5, working, true, true},    {280, 9, working, true, false},
      {380, 30, working, true, true},
  };
  for (const auto& [width, titleLength, state, pinned, tile] : cases) {
    ZelvaneSession session;
    session.title = repeated("글", titleLength);
    session.subtitle = repeated("글", 13);
    session.state = state;
    session.since = timeAt(0);
    session.pinned = pinned;
    const auto layout = rowLayout(viewAt(session, 60), width);
    EXPECT_EQ(!layout.tile.isEmpty(), tile) << width << " " << titleLength;
    if (!tile) continue;
    EXPECT_EQ(layout.tile.width(), pinned ? 40 : 20);
    EXPECT_EQ(layout.tile.right() + 1, pinned ? width - 14 : width - 14 - 52 - 8);
  }
}

TEST(RowLayout, SmallTilesStandBelowOneAnother) {
  for (const auto state : {ZelvaneState::working, ZelvaneState::done, ZelvaneState::idle}) {
    ZelvaneSession session;
    session.title = "짧게";
    session.state = state;
    EXPECT_EQ(rowLayout(viewAt(session, 60), 280).tile.left(), 280 - 14 - 52 - 8 - 20);
  }
}

TEST(RowLayout, ATileMakesWayForAQuestionThatWouldBeCut) {
  for (const auto state : {ZelvaneState::waiting, ZelvaneState::working}) {
    ZelvaneSession session;
    session.title = "짧게";
    session.subtitle = repeated("글", 12);
    session.state = state;
    session.pinned = true;
    const auto layout = rowLayout(viewAt(session, 60), 280);
    EXPECT_EQ(layout.tile.isEmpty(), state == ZelvaneState::waiting);
  }
}

TEST(RowLayout, AQuestionHasTwoLines) {
  for (const auto& [length, cut] : {std::pair{22, false}, {60, true}}) {
    ZelvaneSession session;
    session.subtitle = repeated("글", length);
    session.state = ZelvaneState::waiting;
    QString shown;
    for (const auto& placed : rowLayout(viewAt(session, 60), 280).texts) {
      if (placed.text.startsWith(QChar(0xAE00))) shown += placed.text;
    }
    EXPECT_GT(shown.size(), 20);
    EXPECT_EQ(shown.endsWith(QChar(0x2026)), cut) << shown.toStdString();
  }
}

TEST(RowLayout, ASuggestedEffortStandsBesideTheModelWhereItFits) {
  auto session = fullSession("짧게");
  session.pinned = true;
  session.model = "Opus 4.1";
  session.effort = "low";
  session.suggestedEffort = "high";
  const auto modelOf = [](const RowLayout& layout) {
    const auto& texts = layout.texts;
    return *std::find_if(texts.begin(), texts.end(),
                         [](const auto& placed) { return placed.text == "Opus 4.1 / Low"; });
  };
  const auto narrow = rowLayout(viewAt(session, 60), 280);
  EXPECT_GT(narrow.effortButton.top(), modelOf(narrow).box.bottom());
  const auto wide = rowLayout(viewAt(session, 60), 480);
  EXPECT_EQ(wide.effortButton.top(), modelOf(wide).box.top());
}

TEST(RowLayout, TheCompactButtonLiesOutsideOfTheCharacter) {
  const auto layout = rowLayout(viewAt(fullSession("x"), 60), 300);
  const QRect button = layout.terminalButton;
  EXPECT_EQ(button.topLeft(), QPoint(3, 3));
  int area = 0;
  for (int x = 0; x < button.width(); ++x) {
    for (int y = 0; y < button.height(); ++y) {
      if (!outsideCharacter({x, y}, button.width())) continue;
      ++area;
      EXPECT_FALSE(layout.character.contains(button.topLeft() + QPoint(x, y))) << x << " " << y;
    }
  }
  EXPECT_EQ(area, 14 * 4 + 9 * 10);
}

/// A running clock must not move what stands beside it.
TEST(RowLayout, TheClockKeepsItsPlaceWhileDigitsChange) {
  auto session = fullSession(repeated("긴 제목 ", 40));
  session.progress.reset();
  const auto early = rowLayout(viewAt(session, 1), 280);
  const auto late = rowLayout(viewAt(session, 3599), 280);
  EXPECT_EQ(early.texts.front().text, late.texts.front().text);
  EXPECT_EQ(early.height, late.height);
}

}  // namespace
}  // namespace zelvane
