#include "app/ui/panel/panel_menu.h"

#include <algorithm>
#include <gtest/gtest.h>

namespace zelvane {
namespace {

std::vector<std::string> checkedTitles(const MenuState& state) {
  std::vector<std::string> titles;
  for (const auto& item : panelMenu(state)) {
    if (item.checked) titles.push_back(item.title);
  }
  return titles;
}

TEST(PanelMenu, ChecksFollowTheState) {
  using Titles = std::vector<std::string>;
  EXPECT_EQ(checkedTitles({ThemeID::c, Anchor::top}), (Titles{"  미니멀", "위에 붙이기"}));
  EXPECT_EQ(checkedTitles({ThemeID::a, Anchor::bottom}), (Titles{"  픽셀", "아래에 붙이기"}));
  EXPECT_EQ(checkedTitles({ThemeID::b, Anchor::top}), (Titles{"  따뜻한 사무실", "위에 붙이기"}));
}

TEST(PanelMenu, HasItsItemsInOrder) {
  std::vector<std::string> wanted{"테마",
                                  "  미니멀",
                                  "  픽셀",
                                  "  따뜻한 사무실",
                                  "",
                                  "위에 붙이기",
                                  "아래에 붙이기",
                                  "크기 원래대로",
                                  "",
                                  "로그인할 때 열기",
                                  "Claude Code와 연결하기",
                                  "새로고침",
                                  "업데이트 확인…",
                                  "",
                                  "Zelvane 끝내기"};
  for (const bool updates : {true, false}) {
    if (!updates) std::erase(wanted, "업데이트 확인…");
    std::vector<std::string> titles;
    for (const auto& item : panelMenu({.updates = updates})) titles.push_back(item.title);
    EXPECT_EQ(titles, wanted);
  }
}

TEST(PanelMenu, ResetIsOfferedOnlyWhenThereIsSomethingToReset) {
  for (const bool custom : {false, true}) {
    const auto items = panelMenu({.customSize = custom});
    const auto reset = std::find_if(items.begin(), items.end(), [](const auto& item) {
      return item.command == MenuCommand::resetSize;
    });
    ASSERT_NE(reset, items.end());
    EXPECT_EQ(reset->enabled, custom);
  }
}

TEST(PanelMenu, EveryThemeItemPicksItsTheme) {
  std::vector<ThemeID> picked;
  for (const auto& item : panelMenu({})) {
    if (const auto theme = pickedTheme(item.command)) picked.push_back(*theme);
  }
  EXPECT_TRUE(std::equal(picked.begin(), picked.end(), allThemes.begin(), allThemes.end()));
}

}  // namespace
}  // namespace zelvane
