// The menu of the panel: every setting and command. Its content is pure.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "app/model/records/theme_id.h"
#include "app/ui/panel/placement.h"

namespace zelvane {

enum class MenuCommand {
  none,
  pickMinimal,
  pickPixel,
  pickWarmOffice,
  anchorTop,
  anchorBottom,
  resetSize,
  toggleLogin,
  toggleConnection,
  refresh,
  checkForUpdates,
  quit,
};

/// One line of the menu; a separator has no title.
struct MenuItem {
  std::string title;
  MenuCommand command = MenuCommand::none;
  bool enabled = true;
  bool checkable = false;
  bool checked = false;
  bool operator==(const MenuItem&) const = default;
  bool separator() const { return title.empty(); }
};

/// What the menu depends on.
struct MenuState {
  ThemeID theme = ThemeID::c;
  Anchor anchor = Anchor::top;
  bool customSize = false;
  bool opensAtLogin = false;
  bool connected = false;  ///< with Claude Code
  bool updates = false;    ///< whether there is an updater
};

/// The lines, from top to bottom; made afresh each time the menu is shown.
std::vector<MenuItem> panelMenu(const MenuState& state);

/// The theme that a command picks; nothing for any other command.
std::optional<ThemeID> pickedTheme(MenuCommand command);

}  // namespace zelvane
