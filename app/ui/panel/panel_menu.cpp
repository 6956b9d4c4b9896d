#include "app/ui/panel/panel_menu.h"

#include "core/localization.h"

#include "app/ui/theme.h"

namespace zelvane {
namespace {

constexpr MenuCommand pickCommand(ThemeID theme) {
  switch (theme) {
    case ThemeID::a:
      return MenuCommand::pickPixel;
    case ThemeID::b:
      return MenuCommand::pickWarmOffice;
    case ThemeID::c:
      break;
  }
  return MenuCommand::pickMinimal;
}

MenuItem choice(std::string title, MenuCommand command, bool checked) {
  return {.title = std::move(title), .command = command, .checkable = true, .checked = checked};
}

}  // namespace

std::vector<MenuItem> panelMenu(const MenuState& state) {
  const MenuItem separator;
  std::vector<MenuItem> items{{.title = L("테마"), .enabled = false}};
  for (const auto theme : allThemes) {
    items.push_back(choice("  " + themeTitle(theme), pickCommand(theme), theme == state.theme));
  }
  items.push_back(separator);
  items.push_back(choice(L("위에 붙이기"), MenuCommand::anchorTop, state.anchor == Anchor::top));
  items.push_back(
      choice(L("아래에 붙이기"), MenuCommand::anchorBottom, state.anchor == Anchor::bottom));
  items.push_back({.title = L("크기 원래대로"),
                   .command = MenuCommand::resetSize,
                   .enabled = state.customSize});
  items.push_back(separator);
  items.push_back(choice(L("로그인할 때 열기"), MenuCommand::toggleLogin, state.opensAtLogin));
  items.push_back(
      {.title = state.connected ? L("Claude Code 연결 해제…") : L("Claude Code와 연결하기"),
       .command = MenuCommand::toggleConnection});
  items.push_back({.title = L("새로고침"), .command = MenuCommand::refresh});
  if (state.updates) {
    items.push_back({.title = L("업데이트 확인…"), .command = MenuCommand::checkForUpdates});
  }
  items.push_back(separator);
  items.push_back({.title = L("Zelvane 끝내기"), .command = MenuCommand::quit});
  return items;
}

std::optional<ThemeID> pickedTheme(MenuCommand command) {
  for (const auto theme : allThemes) {
    if (pickCommand(theme) == command) return theme;
  }
  return std::nullopt;
}

}  // namespace zelvane
