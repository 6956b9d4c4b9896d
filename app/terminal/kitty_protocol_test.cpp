#include "app/terminal/kitty_protocol.h"

#include <gtest/gtest.h>

namespace zelvane {
namespace {

/// Two windows of the desktop: in the first the second tab is shown, with two panes.
const char* const reply = R"([
 {"id":1,"is_focused":true,"platform_window_id":77,"tabs":[
  {"id":1,"is_active_tab":false,"windows":[
   {"id":1,"pid":101,"title":"hidden","is_focused":true,"is_active_window":true}]},
  {"id":2,"is_active_tab":true,"windows":[
   {"id":2,"pid":102,"title":"beside","is_focused":false,"is_active_window":false},
   {"id":3,"pid":103,"title":"shown\u0007","is_focused":true,"is_active_window":true},
   {"id":"x","pid":104}, {"id":5,"pid":-1}, {"id":6}, 7]}]},
 {"id":2,"is_focused":false,"platform_window_id":null,"tabs":[
  {"id":3,"is_active":true,"windows":[{"id":4,"pid":105,"is_active":true}]}, "odd"]},
 {"tabs":{}}, null])";

TEST(KittyProtocol, FindsTheShownWindowAmongFlagsThatAlsoHiddenOnesCarry) {
  const auto windows = kittyWindows(Json(reply));
  ASSERT_EQ(windows.size(), 4u);
  EXPECT_EQ(windows[2].title, "shown");
  EXPECT_EQ(windows[2].xWindow, 77u);
  const auto idOf = [](const KittyWindow* window) { return window ? window->id : 0; };
  EXPECT_EQ(idOf(frontOf(windows, std::nullopt)), 3);
  EXPECT_EQ(idOf(frontOf(windows, DesktopWindow{77, 1, "", 77})), 3);
  EXPECT_EQ(idOf(frontOf(windows, DesktopWindow{78, 1, "", 78})), 0);
  auto doubled = windows;
  doubled.push_back(windows[2]);
  EXPECT_EQ(idOf(frontOf(doubled, std::nullopt)), 0);
}

TEST(KittyProtocol, AnswersAreReadOnlyWhenWholeAndGranted) {
  const auto data = kittyAnswer("\033P@kitty-cmd{\"ok\": true, \"data\": \"[]\"}\033\\");
  ASSERT_TRUE(data);
  EXPECT_TRUE(kittyWindows(*data).empty());
  EXPECT_TRUE(kittyAnswer("\033P@kitty-cmd{\"ok\": true}\033\\"));
  for (const char* answer :
       {"", "\033\\", "\033P@kitty-cmd{\"ok\": true}", "\033P@kitty-cmd{\"ok\": 1}\033\\",
        "\033P@kitty-cmd{\"ok\": false, \"error\": \"Remote control is disabled\"}\033\\",
        "\033P@kitty-cmd[true]\033\\", "\033P@kitty-cmd{\"ok\": tr\033\\"}) {
    EXPECT_FALSE(kittyAnswer(answer)) << answer;
  }
  for (const Json& odd : {Json(), Json("["), Json("{}"), Json(5), Json("[[[{}]]]")}) {
    EXPECT_TRUE(kittyWindows(odd).empty()) << odd;
  }
}

TEST(KittyProtocol, RequestsHoldHostileTextAsText) {
  const Json payload = {{"args", {"a\033\\b", "\xff", "'; $(x)"}}};
  const auto request = kittyRequest("launch", payload);
  EXPECT_EQ(request.find('\033', 1), request.size() - 2);
  const auto inside = parseJson(request.substr(12, request.size() - 14));
  ASSERT_TRUE(inside) << request;
  EXPECT_EQ((*inside)["payload"]["args"][0], "a\033\\b");
  EXPECT_EQ((*inside)["payload"]["args"][2], "'; $(x)");
}

TEST(KittyProtocol, KnowsSocketsOfThisMachine) {
  EXPECT_EQ(kittyAddress("unix:/run/k-1"), "/run/k-1");
  EXPECT_EQ(kittyAddress("unix:@k-1"), "@k-1");
  for (const char* other : {"", "tcp:host:1", "unix:", "unix:rel", "/run/k"}) {
    EXPECT_EQ(kittyAddress(other), "") << other;
  }
}

}  // namespace
}  // namespace zelvane
