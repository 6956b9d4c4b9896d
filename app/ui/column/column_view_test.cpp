#include "app/ui/column/column_view.h"

#include <QtGui/QMouseEvent>
#include <QtWidgets/QMenu>
#include <QtWidgets/QScrollBar>
#include <algorithm>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <set>

#include "app/model/store/samples.h"
#include "app/ui/column/test_column.h"
#include "app/ui/render.h"

namespace zelvane {
namespace {

using testing::ElementsAre;

TEST(ColumnView, TheCardConnectsOrGoesAway) {
  Column column(demoRows(1, 1, now));
  EXPECT_TRUE(column.buttons().empty());
  const int without = column.view->contentHeight();

  column.connection.state = Installer::State::notConnected;
  column.connection.controller->refresh();
  ASSERT_EQ(column.buttons().size(), 2U);
  EXPECT_GT(column.view->contentHeight(), without);
  QTest::mouseClick(column.buttons()[1], Qt::LeftButton);
  EXPECT_TRUE(column.buttons().empty()) << "later";
  EXPECT_EQ(column.view->contentHeight(), without);

  column.connection.controller->setCardDismissed(false);
  ASSERT_EQ(column.buttons().size(), 2U);
  QTest::mouseClick(column.buttons()[0], Qt::LeftButton);
  EXPECT_EQ(column.buttons()[0]->text(), QStringLiteral("연결하는 중…"));
  ASSERT_TRUE(QTest::qWaitFor([&] { return !column.connection.controller->busy(); }));
  ASSERT_EQ(column.buttons().size(), 1U) << "the result, to be read and closed";
  QTest::mouseClick(column.buttons()[0], Qt::LeftButton);
  EXPECT_TRUE(column.buttons().empty());

  column.connection.controller->disconnect();
  ASSERT_TRUE(QTest::qWaitFor([&] { return !column.connection.controller->busy(); }));
  ASSERT_EQ(column.buttons().size(), 2U);
  QTest::mouseClick(column.buttons()[1], Qt::LeftButton);
  EXPECT_TRUE(column.buttons().empty()) << "later, although there was something to read";
}

TEST(ColumnView, ATapOpensOneRowAtATimeAndClosesItAgain) {
  Column column(demoRows(3, 1, now));
  EXPECT_EQ(column.sizes(), "sss");
  column.click(1);
  EXPECT_EQ(column.sizes(), "sBs");
  column.click(0);
  EXPECT_EQ(column.sizes(), "Bss");
  column.click(0);
  EXPECT_EQ(column.sizes(), "sss");
}

TEST(ColumnView, WaitingAndPinnedRowsStayBig) {
  auto rows = showcaseRows(1, now);
  rows[1].pinned = true;
  Column column(rows);
  EXPECT_EQ(column.sizes(), "BBsss");
  column.click(0);
  column.click(1);
  EXPECT_EQ(column.sizes(), "BBsss");
}

TEST(ColumnView, NoClickGivesItTheKeys) {
  Column column(showcaseRows(1, now));
  EXPECT_TRUE(column.panel.windowHandle()->flags() & Qt::WindowDoesNotAcceptFocus);
  for (const auto* widget : column.panel.findChildren<QWidget*>()) {
    EXPECT_FALSE(widget->focusPolicy() & Qt::ClickFocus) << widget->accessibleName().toStdString();
  }
}

TEST(ColumnView, RowsKeepTheirWidgets) {
  Column column(showcaseRows(1, now));
  const auto before = column.rows();
  auto rows = showcaseRows(1, now);
  std::swap(rows[1], rows[2]);
  rows.pop_back();
  column.store->showSamples(rows);
  EXPECT_THAT(column.rows(), ElementsAre(before[0], before[2], before[1], before[3]));
}

TEST(ColumnView, TwoProcessesOfOneSessionHaveARowEach) {
  auto rows = demoRows(2, 1, now);
  rows[1].id = rows[0].id;
  rows[1].pid = 7;
  EXPECT_EQ(Column(rows).rows().size(), 2u);
  rows[1].pid = rows[0].pid;
  EXPECT_EQ(Column(rows).rows().size(), 2u);
}

TEST(ColumnView, ThePanelFollowsTheContentAndScrollsBeyondTheScreen) {
  Column column(demoRows(2, 1, now));
  EXPECT_EQ(column.panel.height(), column.view->contentHeight());
  column.store->showSamples(demoRows(60, 1, now));
  EXPECT_GT(column.view->contentHeight(), 2000);
  auto* scroll = column.view->findChild<QScrollArea*>();
  EXPECT_LE(scroll->geometry().bottom(), 700);
  EXPECT_LT(scroll->height(), scroll->widget()->height());
}

/// While the edge is dragged and after it.
TEST(ColumnView, TheLayoutFollowsTheDraggedEdge) {
  for (const bool top : {true, false}) {
    Column column(demoRows(60, 1, now));
    column.store->setAnchorTop(top);
    column.panel.setAnchor(top ? Anchor::top : Anchor::bottom);
    auto* window = column.panel.windowHandle();
    const auto expectWhole = [&] {
      const auto* scroll = column.view->findChild<QScrollArea*>();
      const auto* header = dynamic_cast<Header*>(column.view->childAt(150, 10));
      EXPECT_TRUE(header && header->y() == 0) << top;
      EXPECT_EQ(scroll->geometry().bottom() + 1, column.view->height()) << top;
    };
    const int before = column.panel.height();
    const QPoint from(150, top ? before - 2 : 2);
    const QPoint target = window->mapToGlobal(from) + QPoint(0, top ? -200 : 200);
    QTest::mousePress(window, Qt::LeftButton, {}, from);
    QTest::mouseMove(window, window->mapFromGlobal(target));
    EXPECT_EQ(column.panel.height(), before - 200);
    expectWhole();
    QTest::mouseRelease(window, Qt::LeftButton, {}, window->mapFromGlobal(target));
    EXPECT_EQ(column.panel.height(), before - 200);
    expectWhole();
  }
}

struct Frames : QObject {
  bool eventFilter(QObject* watched, QEvent* event) override {
    if (watched == panel && event->type() == QEvent::Resize) heights.push_back(panel->height());
    if (event->type() == QEvent::Paint) places.insert(still->mapToGlobal(QPoint()).y());
    return false;
  }
  QWidget *panel, *still;
  std::vector<int> heights;
  std::set<int> places;
};

TEST(ColumnView, RowsBetweenAnOpeningOneAndTheAnchorStandStill) {
  for (const bool top : {true, false}) {
    Column column(demoRows(5, 1, now));
    column.store->setAnchorTop(top);
    column.panel.setAnchor(top ? Anchor::top : Anchor::bottom);
    for (int change = 0; change < 3; ++change) {  // it opens, closes, opens
      Frames frames;
      frames.panel = &column.panel;
      frames.still = column.rows()[top ? 1 : 3];
      qApp->installEventFilter(&frames);
      column.click(2);
      const auto wanted = [&] { return column.view->contentHeight() == column.panel.height(); };
      EXPECT_TRUE(QTest::qWaitFor(wanted));
      qApp->removeEventFilter(&frames);
      EXPECT_EQ(frames.places.size(), 1U) << top << change;
      if (change == 1) std::reverse(frames.heights.begin(), frames.heights.end());
      EXPECT_TRUE(std::is_sorted(frames.heights.begin(), frames.heights.end())) << top << change;
      EXPECT_GT(frames.heights.size(), 2U);
    }
  }
}

struct PaintCount : QObject {
  bool eventFilter(QObject*, QEvent* event) override {
    count += event->type() == QEvent::Paint ? 1 : 0;
    return false;
  }
  int count = 0;
};

TEST(ColumnView, APassThatBringsNothingNewPaintsNothing) {
  auto rows = showcaseRows(1, now);
  rows[1].state = rows[2].state = ZelvaneState::idle;
  Column column(rows);
  QTest::qWait(1);
  PaintCount paints;
  qApp->installEventFilter(&paints);
  column.store->showSamples(rows);
  QCoreApplication::processEvents();
  EXPECT_EQ(paints.count, 0);
  rows[4].title = "다른 이름";
  column.store->showSamples(rows);
  QCoreApplication::processEvents();
  EXPECT_GT(paints.count, 0);
  qApp->removeEventFilter(&paints);
}

TEST(ColumnView, OnlyTheClockRunsOnBetweenPasses) {
  Column column(showcaseRows(1, now));
  column.time += Seconds(5);
  const auto rows = column.rows();
  for (auto* row : rows) row->showTime(column.time);
  EXPECT_EQ(rows[0]->view().time.text, "2분째");
  EXPECT_EQ(rows[1]->view().time.text, "6:05");
  EXPECT_EQ(rows[3]->view().time.text, "완료");
}

/// The edges, where the sizes are dragged, lie over the rows: what is no drag is for these.
TEST(ColumnView, RowsAreReachedThroughTheEdges) {
  auto rows = demoRows(60, 1, now);
  rows[1].tty = "/dev/pts/4";
  Column column(rows);
  auto* window = column.panel.windowHandle();
  const auto inPanel = [&](std::size_t row, QPoint point) {
    return column.rows()[row]->mapTo(&column.panel, point);
  };
  const QPoint atTheLeft = inPanel(0, {1, 25});
  QTest::mouseClick(window, Qt::LeftButton, {}, atTheLeft);
  EXPECT_EQ(column.sizes().substr(0, 3), "Bss");
  QTest::mouseClick(window, Qt::LeftButton, {}, atTheLeft);
  EXPECT_EQ(column.sizes().substr(0, 3), "sss");
  column.settle();

  QTest::mouseClick(window, Qt::LeftButton, {}, inPanel(1, {3, 10}));
  EXPECT_TRUE(QTest::qWaitFor([&] { return column.jumpsSoFar().size() == 1; })) << "its button";
  EXPECT_EQ(column.sizes().substr(0, 3), "sss");

  QTest::mouseClick(window, Qt::RightButton, {}, atTheLeft);
  auto* menu = column.view->findChild<QMenu*>();
  ASSERT_TRUE(menu && menu->isVisible());
  menu->close();

  const auto* scroll = column.view->findChild<QScrollArea*>();
  QWheelEvent wheel(atTheLeft, window->mapToGlobal(atTheLeft), {}, {0, -120}, Qt::NoButton, {},
                    Qt::NoScrollPhase, /*inverted=*/false);
  QCoreApplication::sendEvent(window, &wheel);
  EXPECT_GT(scroll->verticalScrollBar()->value(), 0);

  Column low(demoRows(3, 1, now));
  QTest::mouseClick(low.panel.windowHandle(), Qt::LeftButton, {}, {150, low.panel.height() - 2});
  EXPECT_EQ(low.sizes(), "ssB") << "at the bottom";
}

/// The second tap of a double click is none: it would close what the first one opened.
TEST(ColumnView, ADoubleClickOpensARowAndLeavesItOpen) {
  Column column(demoRows(3, 1, now));
  auto* window = column.panel.windowHandle();
  for (const int x : {2, 150}) {
    const auto* row = column.rows()[1];
    const QPoint place = row->mapTo(&column.panel, QPoint(x, 4));
    for (const auto type : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease,
                            QEvent::MouseButtonDblClick, QEvent::MouseButtonRelease}) {
      QMouseEvent event(type, place, window->mapToGlobal(place), Qt::LeftButton, Qt::LeftButton,
                        {});
      QCoreApplication::sendEvent(window, &event);
    }
    EXPECT_EQ(column.sizes(), "sBs") << x;
    column.click(1);
    EXPECT_EQ(column.sizes(), "sss");
  }
}

/// A window manager's "close" ends what is being typed; the program ends by its own menu.
TEST(ColumnView, ClosesOnlyWithTheProgram) {
  Column column(showcaseRows(1, now));
  column.clickTitle(0);
  QTest::keyClicks(column.editor(), "named");
  EXPECT_FALSE(column.panel.windowHandle()->close());
  EXPECT_TRUE(column.panel.isVisible());
  EXPECT_EQ(column.store->editing(), std::nullopt);
  EXPECT_EQ(column.store->notes().entry("show-0").title, "named");

  QTimer::singleShot(0, qApp, &QCoreApplication::quit);
  QTimer tooLong;
  QObject::connect(&tooLong, &QTimer::timeout, [] { QCoreApplication::exit(1); });
  tooLong.start(5000);
  EXPECT_EQ(QCoreApplication::exec(), 0);
}

TEST(ColumnView, TheMenuButtonAsksForTheMenu) {
  Column column(demoRows(1, 1, now));
  auto* button = column.panel.findChild<QAbstractButton*>();
  QTest::mouseClick(column.panel.windowHandle(), Qt::LeftButton, {},
                    button->mapTo(&column.panel, button->rect().center()));
  EXPECT_EQ(column.menus, 1);
}

TEST(Header, DropsTextsThatDoNotFit) {
  Header header(nullptr, [](QPoint) {});
  header.setTexts({"Zelvane", "탭 5", "확인 필요 1", "완료 1"}, ThemeSpec::of(ThemeID::c, false));
  header.resize(284, 38);
  EXPECT_THAT(header.shownTexts(), ElementsAre("Zelvane", "탭 5", "확인 필요 1", "완료 1"));
  header.resize(240, 38);
  EXPECT_THAT(header.shownTexts(), ElementsAre("Zelvane", "확인 필요 1", "완료 1"));
  header.resize(150, 38);
  EXPECT_THAT(header.shownTexts(), ElementsAre("확인 필요 1"));
}

class Picture : public testing::TestWithParam<ThemeID> {};

/// The ground is the theme's, the corners are clear, and there is much to see.
TEST_P(Picture, ShowsTheColumnInItsTheme) {
  const auto store = storeWith(showcaseRows(1, now));
  store->setTheme(GetParam());
  const PanelSize size(std::make_shared<MemoryDefaults>(), PanelSize::Mode::readOnly);
  const Connection connection;
  for (const bool dark : {false, true}) {
    const QImage picture =
        columnPicture(store, connection.controller, size,
                      {.clock = [] { return now; }, .maxHeight = 900, .dark = dark}, 300);
    EXPECT_EQ(picture.width(), 2 * (300 + 16));
    EXPECT_EQ(picture.pixelColor(0, 0).alpha(), 0);
    EXPECT_EQ(picture.pixelColor(17, 17).alpha(), 0);  // outside of the round corner
    const Rgb ground = ThemeSpec::of(GetParam(), dark).bg;
    EXPECT_EQ(picture.pixelColor(316, 24), QColor(ground.red, ground.green, ground.blue));
    std::set<QRgb> colors;
    for (int y = 0; y < picture.height(); ++y) {
      for (int x = 0; x < picture.width(); ++x) colors.insert(picture.pixel(x, y));
    }
    EXPECT_GT(colors.size(), 100u);
  }
}

INSTANTIATE_TEST_SUITE_P(Themes, Picture, testing::ValuesIn(allThemes));

TEST(Picture, OfAnEmptyColumnIsAsHighAsItsText) {
  const PanelSize size(std::make_shared<MemoryDefaults>(), PanelSize::Mode::readOnly);
  const Connection connection;
  ColumnView view(storeWith({}), connection.controller, size,
                  {.clock = [] { return now; }, .maxHeight = 900}, {[](int) {}, [](QPoint) {}});
  view.resize(300, 100);
  view.refresh();
  EXPECT_GT(view.contentHeight(), 60);
  EXPECT_LT(view.contentHeight(), 110);
}

}  // namespace
}  // namespace zelvane
