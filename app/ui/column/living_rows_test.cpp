#include <QtWidgets/QScrollBar>
#include <algorithm>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "app/model/store/samples.h"
#include "app/ui/column/test_column.h"
#include "app/ui/friends/sprite_art.h"
#include "app/ui/render.h"

namespace zelvane {
namespace {

using State = ZelvaneState;

std::vector<ZelvaneSession> rowsOf(std::initializer_list<State> states) {
  auto rows = demoRows(static_cast<int>(states.size()), 9, now);
  std::transform(states.begin(), states.end(), rows.begin(), rows.begin(),
                 [](State state, ZelvaneSession row) {
                   row.state = state;
                   return row;
                 });
  return rows;
}

/// How often the column wakes up in a minute.
std::uint64_t wakesInAMinute(Column& column) { return column.stage->pass(Seconds(60)); }

void awaitMotion(Column& column) {
  ASSERT_TRUE(QTest::qWaitFor([&] { return column.stage->wakesAt.has_value(); }));
}

TEST(LivingRows, WakeOnlyForWhatMoves) {
  struct Case {
    std::vector<ZelvaneSession> rows;
    std::uint64_t least, most;
  };
  const Case cases[]{
      {rowsOf({State::done, State::idle, State::done}), 0, 0},
      {rowsOf({State::working}), 600, 600},
      {rowsOf({State::working, State::agents, State::working, State::agents}), 600, 600},
      {demoRows(60, 9, now), 600, 600},
      // The cursor blinks twice a second, the paper bobs every 0.55 s; sometimes both at once.
      {rowsOf({State::waiting, State::idle}), 190, 230},
  };
  for (const auto& [rows, least, most] : cases) {
    Column column(rows);
    if (least > 0) awaitMotion(column);
    QTest::qWait(1);  // painted, if not moving
    const auto wakes = wakesInAMinute(column);
    EXPECT_GE(wakes, least) << rows.size() << " rows";
    EXPECT_LE(wakes, most) << rows.size() << " rows";
  }
}

TEST(LivingRows, SleepWhileNobodySeesThem) {
  auto rows = demoRows(60, 9, now);
  for (std::size_t i = 1; i < rows.size(); ++i) rows[i].state = State::idle;
  Column column(rows);
  awaitMotion(column);
  auto* bar = column.view->findChild<QScrollArea*>()->verticalScrollBar();

  bar->setValue(bar->maximum());
  // Of the character and of its tile it is found out once.
  EXPECT_LE(wakesInAMinute(column), 2U) << "scrolled away";
  EXPECT_EQ(wakesInAMinute(column), 0U);
  bar->setValue(0);
  awaitMotion(column);
  EXPECT_GE(wakesInAMinute(column), 600U) << "scrolled back";

  column.store->setVisible(false);
  EXPECT_EQ(wakesInAMinute(column), 0U) << "covered";
  column.store->setVisible(true);
  EXPECT_GE(wakesInAMinute(column), 600U);

  column.panel.hide();
  EXPECT_LE(wakesInAMinute(column), 2U) << "hidden";
  EXPECT_EQ(wakesInAMinute(column), 0U);
  column.panel.show();
  awaitMotion(column);

  column.view->setAppearance(/*dark=*/false, /*still=*/true);
  QCoreApplication::processEvents();  // painted: only that lays a row out
  EXPECT_LE(wakesInAMinute(column), 2U) << "the desktop wants nothing to move";
  EXPECT_EQ(wakesInAMinute(column), 0U);
  column.view->setAppearance(/*dark=*/false, /*still=*/false);
  awaitMotion(column);
  rows[0].state = State::done;
  column.store->showSamples(rows);
  QCoreApplication::processEvents();
  EXPECT_LE(wakesInAMinute(column), 2U) << "its turn is over";
  EXPECT_FALSE(column.stage->wakesAt);
}

QImage picture(RowWidget& row) {
  QImage image(row.size() * 2, QImage::Format_ARGB32_Premultiplied);
  image.setDevicePixelRatio(2);
  image.fill(Qt::transparent);
  row.render(&image, QPoint(), QRegion(), QWidget::DrawChildren);
  return image;
}

/// Everything but the time at the end.
QImage withoutTime(RowWidget& row) {
  const QImage whole = picture(row);
  return whole.copy(0, 0, whole.width() - 2 * (14 + 52), whole.height());
}

/// Passes and new places must not make characters and tiles begin anew.
TEST(LivingRows, GoOnWhereTheyAreWhenRowsChange) {
  auto rows = rowsOf({State::working, State::working, State::idle});
  Column column(rows);
  awaitMotion(column);
  auto* first = column.rows()[0];
  const QRect character(2 * 12, 2 * 9, 2 * 34, 2 * 30);
  const QImage atFirst = picture(*first).copy(character);
  for (int i = 0; i < 50 && picture(*first).copy(character) == atFirst; ++i) {
    column.stage->pass(Seconds(0.1));
  }
  const QImage before = withoutTime(*first);
  EXPECT_NE(before.copy(character), atFirst);
  std::swap(rows[0], rows[1]);
  rows[2].state = State::done;
  column.time += Seconds(5);
  column.store->showSamples(rows);
  EXPECT_EQ(column.rows()[1], first);
  EXPECT_EQ(first->view().time.text, "0:05");
  EXPECT_EQ(withoutTime(*first), before);
  column.stage->pass(Seconds(0.1));
  EXPECT_NE(withoutTime(*first), before);
}

/// It comes to what a row looks like at once where nothing is to move.
TEST(LivingRows, ARowThatOpensFadesToItsEnd) {
  Column still(rowsOf({State::idle})), moving(rowsOf({State::idle}));
  still.view->setAppearance(/*dark=*/false, /*still=*/true);
  for (auto* column : {&still, &moving}) column->click(0);
  const QImage opened = picture(*still.rows()[0]);
  EXPECT_TRUE(QTest::qWaitFor([&] { return picture(*moving.rows()[0]) == opened; }));
  EXPECT_EQ(picture(*still.rows()[0]), opened);
}

/// In a still picture the character lies in its frame as it was drawn, pixel by pixel.
TEST(LivingRows, ACharacterLiesInItsFrame) {
  const auto rows = rowsOf({State::waiting, State::working});
  Column column(rows);
  column.view->setAppearance(/*dark=*/false, /*still=*/true);
  QCoreApplication::processEvents();  // painted: only that lays a row out
  struct Case {
    Pose pose;
    bool big;
    QRect frame;
  };
  const Case cases[]{{Pose::paperUp(0), true, {14, 11, 64, 48}},
                     {Pose::legs(0), false, {12, 9, 34, 30}}};
  for (std::size_t i = 0; i < 2; ++i) {
    const auto& [pose, big, frame] = cases[i];
    const QImage row = picture(*column.rows()[i]);
    const auto drawn = SpriteArt::image(static_cast<int>(i), pose, big, frame.size());
    ASSERT_TRUE(drawn);
    int solid = 0;
    for (int y = 0; y < drawn->height(); ++y) {
      for (int x = 0; x < drawn->width(); ++x) {
        if (drawn->pixelColor(x, y).alpha() < 255) continue;
        ++solid;
        ASSERT_EQ(row.pixelColor(2 * frame.x() + x, 2 * frame.y() + y), drawn->pixelColor(x, y))
            << i << ": " << x << " " << y;
      }
    }
    EXPECT_GT(solid, 500) << i;
  }
}

std::vector<TerminalButton*> terminalButtons(const Column& column) {
  std::vector<TerminalButton*> found;
  for (auto* row : column.rows()) {
    for (auto* child : row->findChildren<QWidget*>()) {
      if (auto* button = dynamic_cast<TerminalButton*>(child)) found.push_back(button);
    }
  }
  return found;
}

TEST(TerminalButton, GoesToTheTerminalAndOnlyFromItsShape) {
  auto rows = rowsOf({State::waiting, State::working, State::working});
  rows[0].tty = "/dev/pts/1";
  rows[1].tty = "/dev/pts/2";
  Column column(rows);
  const auto click = [&](std::size_t row, QPoint at) {
    ASSERT_TRUE(
        QTest::qWaitFor([&] { return column.panel.height() == column.view->contentHeight(); }));
    auto* button = terminalButtons(column).at(row);
    QTest::mouseClick(column.panel.windowHandle(), Qt::LeftButton, {},
                      button->mapTo(&column.panel, at));
  };
  const auto jumped = [&](const std::vector<std::string>& to) {
    return QTest::qWaitFor([&] { return column.jumpsSoFar() == to; });
  };
  const auto& view = [&](std::size_t row) { return column.rows()[row]->view(); };
  EXPECT_FALSE(view(0).terminal.compact);
  EXPECT_TRUE(view(1).terminal.compact);
  EXPECT_EQ(terminalButtons(column)[1]->text().toStdString(), "터미널로 이동");

  click(1, {6, 12});
  EXPECT_TRUE(jumped({"/dev/pts/2"}));
  EXPECT_EQ(column.sizes(), "Bss") << "the row itself is not tapped";
  EXPECT_TRUE(view(0).terminal.compact) << "by now the user knows it";
  click(0, {32, 7});
  EXPECT_TRUE(jumped({"/dev/pts/2", "/dev/pts/1"}));

  click(1, {12, 12});  // over the character
  EXPECT_EQ(column.sizes(), "BBs");
  click(2, {6, 12});  // without a terminal
  EXPECT_EQ(column.sizes(), "BsB");
  EXPECT_EQ(column.jumpsSoFar().size(), 2U);
}

}  // namespace
}  // namespace zelvane
