#include <QtGui/QInputMethodEvent>
#include <QtGui/QTextBlock>
#include <QtGui/QTextLayout>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QMenu>
#include <QtWidgets/QTextEdit>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "app/model/store/samples.h"
#include "app/ui/column/test_column.h"
#include "app/ui/editors/memo_editor.h"
#include "app/ui/editors/title_editor.h"

namespace zelvane {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// A syllable as an input method hands it over.
void compose(QWidget* field, const QString& preedit, const QString& committed = {}) {
  QInputMethodEvent event(preedit, {});
  event.setCommitString(committed);
  QApplication::sendEvent(field, &event);
}

/// An editor alone in a window that has the keys, with what it told so far.
struct Alone {
  explicit Alone(bool memo, const std::string& initial = "처음") {
    const auto log = [this](const char* what) {
      return [this, what](const std::string& text) { told.push_back(what + (":" + text)); };
    };
    if (memo) {
      editor = new MemoEditor(&window, initial, {log("change"), log("done"), [] {}});
    } else {
      editor = new TitleEditor(&window, initial, "claude",
                               {log("commit"), [this] { told.emplace_back("cancel"); }});
    }
    editor->setGeometry(0, 0, 200, editor->wantedHeight());
    window.show();
    window.activateWindow();
    editor->setFocus();
    EXPECT_TRUE(QTest::qWaitFor([&] { return field()->hasFocus(); }));
  }
  QWidget* field() const { return editor->focusProxy(); }
  void loseFocus() const { field()->clearFocus(); }

  ~Alone() { editor->abandon(); }
  Alone(const Alone&) = delete;
  Alone& operator=(const Alone&) = delete;

  QWidget window;
  RowEditor* editor;
  std::vector<std::string> told;
};

TEST(TitleEditor, EndsExactlyOnce) {
  struct Case {
    const char* typed;
    Qt::Key key;  ///< 0 for none: only the focus is lost
    const char* told;
  };
  const Case cases[]{
      {"new", Qt::Key_Return, "commit:new"}, {"new", Qt::Key_Enter, "commit:new"},
      {"new", Qt::Key(0), "commit:new"},     {"new", Qt::Key_Escape, "cancel"},
      {"", Qt::Key_Return, "cancel"},
  };
  for (const auto& [typed, key, told] : cases) {
    Alone alone(/*memo=*/false);
    QTest::keyClicks(alone.field(), typed);  // over the selected old title
    if (key) QTest::keyClick(alone.field(), key);
    alone.loseFocus();
    alone.editor->finish();
    EXPECT_THAT(alone.told, ElementsAre(told));
  }
}

TEST(TitleEditor, BlanksAtTheEndsChangeNothing) {
  Alone alone(/*memo=*/false, "name");
  QTest::keyClick(alone.field(), Qt::Key_End);
  QTest::keyClicks(alone.field(), "  ");
  QTest::keyClick(alone.field(), Qt::Key_Return);
  EXPECT_THAT(alone.told, ElementsAre("cancel"));
}

TEST(MemoEditor, ReportsEachChangeAndEndsOnce) {
  enum class End { returnKey, escape, focus, button };
  for (const auto end : {End::returnKey, End::escape, End::focus, End::button}) {
    Alone alone(/*memo=*/true);
    EXPECT_THAT(alone.told, IsEmpty()) << "opening is no change";
    QTest::keyClick(alone.field(), 'x');
    QTest::keyClick(alone.field(), Qt::Key_Return, Qt::ShiftModifier);
    if (end == End::returnKey) QTest::keyClick(alone.field(), Qt::Key_Return);
    if (end == End::escape) QTest::keyClick(alone.field(), Qt::Key_Escape);
    if (end == End::button) alone.editor->findChild<PillButton*>()->click();
    alone.loseFocus();
    EXPECT_THAT(alone.told, ElementsAre("change:처음x", "change:처음x\n", "done:처음"));
  }
}

TEST(MemoEditor, GrowsToSixLines) {
  Alone alone(/*memo=*/true, "");
  const int one = alone.editor->wantedHeight();
  std::vector<int> lines;
  for (int i = 0; i < 7; ++i) {
    lines.push_back(1 + (alone.editor->wantedHeight() - one) / 16);
    QTest::keyClick(alone.field(), Qt::Key_Return, Qt::ShiftModifier);
  }
  EXPECT_THAT(lines, ElementsAre(1, 2, 3, 4, 5, 6, 6));
}

TEST(RowEditor, KeysOfACompositionAreTheInputMethods) {
  for (const bool memo : {false, true}) {
    for (const auto key : {Qt::Key_Return, Qt::Key_Escape}) {
      Alone alone(memo, "");
      compose(alone.field(), "하");
      QTest::keyClick(alone.field(), key);
      EXPECT_TRUE(alone.told.empty() || alone.told == std::vector<std::string>{"change:하"})
          << "the editing goes on";
      QTest::keyClick(alone.field(), Qt::Key_Return);
      EXPECT_EQ(alone.told.size(), memo && key == Qt::Key_Return ? 2U : 1U);
    }
  }
}

TEST(RowEditor, LosesNothingThatIsBeingComposed) {
  for (const bool memo : {false, true}) {
    Alone alone(memo, "");
    compose(alone.field(), "다");
    compose(alone.field(), "메", "다");
    compose(alone.field(), "모", "메");
    alone.loseFocus();
    if (memo) {
      EXPECT_THAT(alone.told, ElementsAre("change:다", "change:다메", "change:다메모", "done:"));
    } else {
      EXPECT_THAT(alone.told, ElementsAre("commit:다메모"));
    }
  }
}

TEST(Editing, ATitleIsEditedInItsPlaceAndTheKeysAreGivenBack) {
  auto rows = showcaseRows(1, now);
  rows[0].claudeTitle = "claude";
  Column column(rows);
  column.clickTitle(0);
  auto* field = dynamic_cast<QLineEdit*>(column.editor());
  ASSERT_TRUE(field);
  EXPECT_EQ(field->placeholderText(), "claude");
  EXPECT_EQ(field->accessibleName(), "이름 바꾸기");
  EXPECT_FALSE(column.panel.windowHandle()->flags() & Qt::WindowDoesNotAcceptFocus);
  QTest::keyClicks(field, "named");
  QTest::keyClick(field, Qt::Key_Return);
  EXPECT_EQ(column.store->editing(), std::nullopt);
  EXPECT_TRUE(column.panel.windowHandle()->flags() & Qt::WindowDoesNotAcceptFocus);
  EXPECT_EQ(column.rows()[0]->view().title.text, "named") << "without waiting for a pass";

  column.clickTitle(0);
  field = dynamic_cast<QLineEdit*>(column.editor());
  ASSERT_TRUE(field);
  field->setText("claude");
  column.clickTitle(0);  // where the title was there is no title now
  column.click(1);
  EXPECT_EQ(column.store->notes().entry(rows[0].id).title, std::nullopt) << "follows again";
  EXPECT_EQ(column.sizes(), "BBsss") << "and the click counts";
}

TEST(Editing, TheTapThatOpensARowDoesNotEditIt) {
  Column column(demoRows(2, 1, now));
  column.click(0);
  column.clickTitle(0);
  EXPECT_EQ(column.store->editing(), std::nullopt);
  column.time += Seconds(0.5);
  column.clickTitle(0);
  EXPECT_EQ(column.store->editing(), "title:demo-0");
}

TEST(Editing, APassLeavesWhatIsTypedAlone) {
  auto rows = showcaseRows(1, now);
  Column column(rows);
  column.press("+ 메모");
  auto* field = dynamic_cast<QTextEdit*>(column.editor());
  ASSERT_TRUE(field);
  const int height = column.rows()[0]->height();
  QTest::keyClicks(field, "a");
  compose(field, "하");
  std::swap(rows[0], rows[1]);
  rows[1].state = ZelvaneState::working;  // it would be small by now
  rows.push_back(demoRows(1, 1, now)[0]);
  column.store->showSamples(rows);

  EXPECT_EQ(QApplication::focusWidget(), field);
  EXPECT_EQ(field->textCursor().block().layout()->preeditAreaText(), "하");
  ASSERT_EQ(column.sizes(), "sBssss");
  EXPECT_EQ(column.rows()[1]->height(), height);
  const auto* row = column.rows()[1];
  const QPoint place = row->mapFromGlobal(field->mapToGlobal(QPoint(0, 0)));
  EXPECT_TRUE(row->editorPlace().contains(place)) << "it moved along with its row";
  compose(field, "", "한");
  EXPECT_EQ(column.store->notes().entry("show-0").memo, "a한");
}

TEST(Editing, TheTabKeyStaysWithTheMemo) {
  Column column(showcaseRows(1, now));
  column.press("+ 메모");
  auto* field = column.editor();
  QTest::keyClick(field, Qt::Key_Tab);
  auto* button = QApplication::focusWidget();
  EXPECT_NE(button, field);
  QTest::keyClick(button, Qt::Key_Tab);
  EXPECT_EQ(QApplication::focusWidget(), field);
  QTest::keyClick(field, Qt::Key_Backtab);
  EXPECT_EQ(column.store->editing(), "memo:show-0");
  QTest::keyClick(button, Qt::Key_Space);
  EXPECT_EQ(column.store->editing(), std::nullopt);
}

TEST(Editing, EndsWithItsRowAndKeepsWhatWasTyped) {
  auto rows = showcaseRows(1, now);
  Column column(rows);
  column.clickTitle(0);
  QTest::keyClicks(column.editor(), "named");
  rows.erase(rows.begin());
  column.store->showSamples(rows);
  EXPECT_EQ(column.store->editing(), std::nullopt);
  EXPECT_EQ(column.store->notes().entry("show-0").title, "named");
}

TEST(Editing, StaysInSightWhileItGrowsAndItsRowMoves) {
  auto rows = demoRows(30, 1, now);
  for (auto& row : rows) row.state = ZelvaneState::waiting;
  Column column(rows);
  const auto inSight = [&] {
    const auto* scroll = column.view->findChild<QScrollArea*>();
    const auto* editor = column.editor()->parentWidget();
    const QRect place(editor->mapTo(scroll, QPoint(0, 0)), editor->size());
    return scroll->rect().contains(place);
  };
  column.press("+ 메모");
  EXPECT_TRUE(inSight());
  rows[0].state = ZelvaneState::working;
  std::rotate(rows.begin(), rows.begin() + 1, rows.end());
  column.store->showSamples(rows);
  EXPECT_TRUE(inSight()) << "below all others";
  std::rotate(rows.begin(), rows.end() - 1, rows.end());
  column.store->showSamples(rows);
  EXPECT_TRUE(inSight()) << "above them again";
  column.store->setEditing("memo:" + rows.back().id);
  for (int i = 0; i < 5; ++i) {
    QTest::keyClick(column.editor(), Qt::Key_Return, Qt::ShiftModifier);
    EXPECT_TRUE(inSight()) << i;
  }
}

TEST(Editing, ARowThatHasGoneTakesNoKeys) {
  auto rows = showcaseRows(1, now);
  Column column(rows);
  QTest::mouseClick(column.panel.windowHandle(), Qt::RightButton, {},
                    column.rows()[0]->mapTo(&column.panel, QPoint(100, 20)));
  rows.erase(rows.begin());
  column.store->showSamples(rows);
  for (auto* action : column.view->findChild<QMenu*>()->actions()) {
    if (action->text() == "이름 바꾸기") action->trigger();
  }
  EXPECT_EQ(column.store->editing(), std::nullopt);
  column.store->setEditing("title:show-0");
  EXPECT_EQ(column.store->editing(), std::nullopt);
  EXPECT_TRUE(column.panel.windowHandle()->flags() & Qt::WindowDoesNotAcceptFocus);
}

TEST(Editing, AnotherEditorTakesOver) {
  auto rows = showcaseRows(1, now);
  rows[1].pinned = true;
  Column column(rows);
  column.clickTitle(0);
  QTest::keyClicks(column.editor(), "named");
  column.press("+ 메모");
  EXPECT_EQ(column.store->editing(), "memo:show-1");
  EXPECT_EQ(column.store->notes().entry("show-0").title, "named");
  EXPECT_TRUE(dynamic_cast<QTextEdit*>(column.editor()));
}

}  // namespace
}  // namespace zelvane
