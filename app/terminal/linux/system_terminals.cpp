#include "app/terminal/system_terminals.h"

#include "core/paths.h"

#include "app/terminal/kitty.h"
#include "app/terminal/linux/gnome_terminal.h"
#include "app/terminal/linux/konsole.h"
#include "app/terminal/linux/open_window.h"
#include "app/terminal/linux/sway_desktop.h"
#include "app/terminal/linux/tilix.h"
#include "app/terminal/linux/window_host.h"
#include "app/terminal/linux/x11_desktop.h"
#include "app/terminal/wezterm.h"

namespace zelvane {

std::unique_ptr<TerminalSet> systemTerminals() {
  TerminalParts parts;
  parts.processes = systemProcesses();
  const auto swaySocket = ZelvanePaths::env("SWAYSOCK");
  if (swaySocket) {
    parts.desktop = std::make_unique<SwayDesktop>(*swaySocket);
  } else {
    parts.desktop = std::make_unique<X11Desktop>();
  }
  parts.tmux = std::make_unique<Tmux>();
  const auto openKitty = [](const OpenRequest& request) { return openWindowOf("kitty", request); };
  parts.hosts.push_back(std::make_unique<KittyHost>(parts.processes, openKitty));
  parts.hosts.push_back(std::make_unique<WezTermHost>());
  const auto bus = std::make_shared<Bus>();
  parts.hosts.push_back(std::make_unique<KonsoleHost>(parts.processes, bus));
  parts.hosts.push_back(std::make_unique<GnomeTerminalHost>(bus));
  parts.hosts.push_back(std::make_unique<TilixHost>(bus));
  parts.hosts.push_back(std::make_unique<WindowHost>());
  parts.openAnywhere = openAnyWindow;
  return std::make_unique<TerminalSet>(std::move(parts));
}

}  // namespace zelvane
