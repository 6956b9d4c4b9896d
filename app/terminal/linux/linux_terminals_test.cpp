#include <gmock/gmock.h>

#include "app/terminal/linux/konsole.h"
#include "app/terminal/linux/open_window.h"
#include "app/terminal/linux/sway_desktop.h"

namespace zelvane {
namespace {

using testing::ElementsAre;

TEST(Konsole, CountsTheChildrenOfABusObject) {
  const char* text =
      "<!DOCTYPE node>\n<node>\n  <interface name=\"a\"/>\n  <node name=\"12\"/>\n"
      "  <node name=\"2\"/>\n<node name=\"MainWindow_3\"/><node name=\"99999999999\"/>\n"
      "<node name=\"-1\"/><node name=\"MainWindow_x\"/><node name=\"7";
  EXPECT_THAT(childNumbers(text, ""), ElementsAre(2, 7, 12));
  EXPECT_THAT(childNumbers(text, "MainWindow_"), ElementsAre(3));
  EXPECT_TRUE(childNumbers("", "").empty());
}

TEST(OpenWindow, KnowsProgramsByTheirProcessesToo) {
  const OpenRequest request{"/a", {"sh", "-c", "a 'b'; c"}};
  EXPECT_THAT(windowWords("wezterm-gui", request),
              ElementsAre("start", "--", "sh", "-c", "a 'b'; c"));
  EXPECT_THAT(windowWords("gnome-terminal-", request), ElementsAre("--", "sh", "-c", "a 'b'; c"));
  EXPECT_THAT(windowWords("tilix", request),
              ElementsAre("--action=app-new-session", "-e", "sh -c 'a '\"'\"'b'\"'\"'; c'"));
  EXPECT_THAT(windowWords("xterm", {"/a", {"ls"}}), ElementsAre("-e", "env", "ls"));
  EXPECT_TRUE(windowWords("memfd:sealed-91", request).empty());
}

TEST(Sway, FindsWindowsAnywhereInTheTree) {
  const auto tree = parseJson(R"({"id":1,"type":"root","nodes":[
    {"id":2,"nodes":[{"id":5,"pid":50,"name":"a\u0007","focused":false,"nodes":[]},
                     {"id":6,"pid":60,"name":null,"focused":true,"window":77}],
     "floating_nodes":[{"id":7,"pid":70,"name":"f","focused":"yes"}, null, {"id":8,"pid":-1}]},
    "odd", {"pid":5}]})");
  const auto windows = swayWindows(*tree);
  ASSERT_EQ(windows.size(), 3u);
  EXPECT_EQ(windows[0].window, (DesktopWindow{5, 50, "a", std::nullopt}));
  EXPECT_EQ(windows[1].window, (DesktopWindow{6, 60, "", 77}));
  EXPECT_TRUE(windows[1].focused);
  EXPECT_EQ(windows[2].window.id, 7u);
  EXPECT_FALSE(windows[2].focused);
}

}  // namespace
}  // namespace zelvane
