#include "app/ui/panel/column_panel.h"

#include <QtGui/QWindow>
#include <QtTest/QTest>
#include <gtest/gtest.h>

#include "app/ui/panel/screens.h"

namespace zelvane {
namespace {

struct Panel {
  Panel() {
    panel.setContent(new QWidget);
    panel.setContentHeight(300);
    panel.appear();
    EXPECT_TRUE(QTest::qWaitForWindowExposed(&panel));
  }
  void settle() const {
    EXPECT_TRUE(QTest::qWaitFor([&] { return panel.height() == expected().height; }));
  }
  Area expected() const { return panelFrame(size.chosen(), height, anchor, *usableScreen()); }
  Area actual() const { return {panel.x(), panel.y(), panel.width(), panel.height()}; }
  void drag(QPoint from, QPoint by) {
    QWindow* window = panel.windowHandle();
    // The window may move under the pointer: what counts is the place on the screen.
    const QPoint target = window->mapToGlobal(from) + by;
    QTest::mousePress(window, Qt::LeftButton, {}, from);
    QTest::mouseMove(window, window->mapFromGlobal(target));
    QTest::mouseRelease(window, Qt::LeftButton, {}, window->mapFromGlobal(target));
  }

  PanelSize size{std::make_shared<MemoryDefaults>(), PanelSize::Mode::saving};
  ColumnPanel panel{size, {}};
  int height = 300;
  Anchor anchor = Anchor::top;
};

TEST(ColumnPanel, GrowsAndShrinksAtItsAnchor) {
  Panel panel;
  EXPECT_EQ(panel.actual(), panel.expected());
  panel.panel.setContentHeight(panel.height = 420);
  EXPECT_LT(panel.panel.height(), 420);  // not at once
  panel.settle();
  EXPECT_EQ(panel.actual(), panel.expected());
  panel.panel.setAnchor(panel.anchor = Anchor::bottom);
  EXPECT_EQ(panel.actual(), panel.expected());
  panel.panel.setContentHeight(panel.height = 250);
  panel.settle();
  EXPECT_EQ(panel.actual(), panel.expected());
  panel.panel.setStill(true);
  panel.panel.setContentHeight(panel.height = 300);
  EXPECT_EQ(panel.actual(), panel.expected());
}

TEST(ColumnPanel, TheLeftEdgeChoosesTheWidth) {
  Panel panel;
  const int right = panel.panel.geometry().right();
  panel.drag({2, 150}, {-50, 3});
  EXPECT_EQ(panel.size.chosen(), (ChosenSize{330.0, {}}));
  EXPECT_EQ(panel.panel.width(), 330);
  EXPECT_EQ(panel.panel.geometry().right(), right);
  panel.drag({2, 150}, {-3, 0});
  EXPECT_EQ(panel.size.chosen(), (ChosenSize{330.0, {}})) << "a tap";
}

TEST(ColumnPanel, TheFreeEdgeChoosesTheGreatestHeight) {
  Panel panel;
  panel.drag({150, 298}, {0, -60});
  EXPECT_EQ(panel.size.chosen(), (ChosenSize{{}, 240.0}));
  EXPECT_EQ(panel.panel.height(), 240);
}

TEST(ColumnPanel, TheCornerChoosesBoth) {
  Panel panel;
  panel.drag({8, 292}, {-20, -60});
  EXPECT_EQ(panel.size.chosen(), (ChosenSize{300.0, 240.0}));
  panel.panel.setAnchor(panel.anchor = Anchor::bottom);
  panel.drag({8, 8}, {10, -30});
  EXPECT_EQ(panel.size.chosen(), (ChosenSize{290.0, 270.0}));
}

TEST(ColumnPanel, TheFreeEdgeIsOppositeOfTheAnchor) {
  Panel panel;
  panel.panel.setAnchor(Anchor::bottom);
  panel.drag({150, 298}, {0, -60});
  EXPECT_EQ(panel.size.chosen(), ChosenSize{});
  panel.drag({150, 2}, {0, 60});
  EXPECT_EQ(panel.size.chosen(), (ChosenSize{{}, 240.0}));
}

}  // namespace
}  // namespace zelvane
