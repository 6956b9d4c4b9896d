// The column without a pointer and without eyes: keys, and what a screen reader is told.
#include <QtGui/QAccessible>
#include <QtWidgets/QMenu>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "app/model/store/samples.h"
#include "app/ui/column/test_column.h"

namespace zelvane {
namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;

QAccessibleInterface* told(QWidget* widget) {
  return QAccessible::queryAccessibleInterface(widget);
}

std::string text(QWidget* widget, QAccessible::Text kind) {
  return told(widget)->text(kind).toStdString();
}

/// The column while its window may have the keys, as during an edit.
struct FocusedColumn : Column {
  explicit FocusedColumn(std::vector<ZelvaneSession> rows) : Column(std::move(rows)) {
    panel.windowHandle()->setFlag(Qt::WindowDoesNotAcceptFocus, false);
    panel.overrideWindowFlags(panel.windowHandle()->flags());
    panel.activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(&panel));
  }
  void press(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
    QTest::keyClick(panel.windowHandle(), key, modifiers);
  }
  std::string focused() const {
    auto* widget = panel.focusWidget();
    return widget ? text(widget, QAccessible::Name) : "nothing";
  }
};

TEST(Reach, EverythingThatCanBePressedHasANameAndARole) {
  auto rows = showcaseRows(1, now);
  rows[1].progress = ZelvaneSession::Progress{3, 7};
  rows[1].memo = "로그 확인";
  Column column(rows);
  column.connection.state = Installer::State::notConnected;
  column.connection.controller->refresh();
  for (auto* widget : column.panel.findChildren<QWidget*>()) {
    if (!widget->isVisible() || widget->focusPolicy() == Qt::NoFocus) continue;
    EXPECT_NE(text(widget, QAccessible::Name), "") << told(widget)->role();
    EXPECT_THAT(told(widget)->role(),
                testing::AnyOf(QAccessible::ListItem, QAccessible::Button, QAccessible::CheckBox))
        << text(widget, QAccessible::Name);
  }
  EXPECT_EQ(text(column.rows()[1], QAccessible::Name),
            "사진 업로드 속도 개선, 작업 중, 썸네일 캐시 확인 중");
  EXPECT_EQ(text(column.rows()[1], QAccessible::Description), "6분째, 할 일 3/7, 메모: 로그 확인");
  EXPECT_THAT(text(column.buttons()[0]->parentWidget(), QAccessible::Name),
              AllOf(HasSubstr("Claude Code와 연결하기"), HasSubstr("백업")));
  EXPECT_EQ(told(column.rows()[0]->parentWidget())->role(), QAccessible::List);
}

/// Buttons that are hidden at the moment would be there for a screen reader to find.
TEST(Reach, NothingHiddenIsTold) {
  const auto hidden = [](const QWidget& panel) {
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    std::vector<std::string> found;
    for (auto* button : panel.findChildren<QAbstractButton*>()) {
      if (button->isHidden() || button->parentWidget()->isHidden()) {
        found.push_back(button->text().toStdString());
      }
    }
    return found;
  };
  Column column(demoRows(2, 1, now));
  EXPECT_THAT(hidden(column.panel), ElementsAre());
  column.click(0);
  column.connection.state = Installer::State::notConnected;
  column.connection.controller->refresh();
  EXPECT_THAT(hidden(column.panel), ElementsAre());
  column.click(0);
  column.connection.controller->setCardDismissed(true);
  EXPECT_THAT(hidden(column.panel), ElementsAre());
}

TEST(Reach, ARowCanBePressedAndOpenedAndHasAMenu) {
  Column column(showcaseRows(1, now));
  const auto actions = [&](std::size_t row) {
    return told(column.rows()[row])->actionInterface()->actionNames();
  };
  const QString open = QStringLiteral("이 탭으로 이동"), focus = "SetFocus", menu = "ShowMenu";
  EXPECT_EQ(actions(0), (QStringList{focus, open, menu})) << "it waits, and stays open";
  EXPECT_EQ(actions(1), (QStringList{"Press", focus, menu})) << "it has no terminal";

  EXPECT_TRUE(told(column.rows()[1])->state().collapsed);
  told(column.rows()[1])->actionInterface()->doAction("Press");
  EXPECT_EQ(column.sizes(), "BBsss");
  EXPECT_TRUE(told(column.rows()[1])->state().expanded);
  told(column.rows()[0])->actionInterface()->doAction(open);
  EXPECT_TRUE(QTest::qWaitFor([&] { return column.jumpsSoFar().size() == 1; }));
}

TEST(Reach, TheTabKeyGoesRoundInTheOrderOfReading) {
  FocusedColumn column(showcaseRows(1, now));
  std::vector<std::string> order;
  for (int i = 0; i < 9; ++i) {
    order.push_back(column.focused().substr(0, column.focused().find(',')));
    column.press(Qt::Key_Tab);
  }
  column.press(Qt::Key_Backtab, Qt::ShiftModifier);
  EXPECT_THAT(order, ElementsAre("메뉴", "결제 웹훅 재시도", "+ 메모", "터미널로 이동",
                                 "사진 업로드 속도 개선", "다크 모드 색 점검",
                                 "로그인 화면 문구 정리", "README 다듬기", "메뉴"));
  column.press(Qt::Key_Backtab, Qt::ShiftModifier);
  EXPECT_THAT(column.focused(), HasSubstr("README"));
}

TEST(Reach, ArrowsGoFromRowToRowAndKeysPressThem) {
  FocusedColumn column(showcaseRows(1, now));
  column.press(Qt::Key_Return);
  EXPECT_EQ(column.menus, 1);
  column.press(Qt::Key_Down);
  column.press(Qt::Key_Down);
  EXPECT_THAT(column.focused(), HasSubstr("사진"));
  column.press(Qt::Key_Space);
  EXPECT_EQ(column.sizes(), "BBsss");
  column.press(Qt::Key_Down);
  column.press(Qt::Key_Enter);
  EXPECT_EQ(column.sizes(), "BsBss");
  column.press(Qt::Key_Up);
  column.press(Qt::Key_Up);
  EXPECT_THAT(column.focused(), HasSubstr("결제"));
  column.press(Qt::Key_Delete);
  EXPECT_EQ(column.sizes(), "BsBss");
  column.press(Qt::Key_F10, Qt::ShiftModifier);
  auto* menu = column.view->findChild<QMenu*>();
  ASSERT_TRUE(menu);
  EXPECT_TRUE(menu->isVisible());
}

TEST(Reach, AnOpenEditorKeepsTheArrows) {
  FocusedColumn column(showcaseRows(1, now));
  for (const char* key : {"title:show-0", "memo:show-0"}) {
    column.store->setEditing(key);
    for (const auto arrow : {Qt::Key_Up, Qt::Key_Down}) column.press(arrow);
    EXPECT_EQ(column.store->editing(), key);
  }
}

TEST(Reach, TheFocusedRowScrollsIntoSightAndIsMarked) {
  FocusedColumn column(demoRows(60, 1, now));
  const auto last = column.rows().back();
  const QImage before = last->grab().toImage();
  column.press(Qt::Key_Backtab, Qt::ShiftModifier);
  ASSERT_TRUE(last->hasFocus());
  EXPECT_FALSE(last->visibleRegion().isEmpty());
  EXPECT_NE(last->grab().toImage(), before);
}

}  // namespace
}  // namespace zelvane
