// What kitty is asked over its remote-control socket, and what it answers. Pure.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/json_file.h"

#include "app/terminal/desktop.h"

namespace zelvane {

/// One of kitty's windows: a pane of a tab of a window of the desktop.
struct KittyWindow {
  std::int64_t id = 0;
  std::int32_t pid = 0;  ///< of its shell
  std::string title;
  std::optional<std::uint32_t> xWindow;  ///< the desktop's window; absent on Wayland
  bool isShown = false;                  ///< the active pane of the active tab of its window
  bool hasFocus = false;                 ///< and that window has the keyboard, by kitty's own word
};

/// The socket's address in the variable KITTY_LISTEN_ON, as `platform::askLocalSocket` takes it;
/// empty when it is none on this machine.
std::string kittyAddress(std::string_view variable);

/// A command as it is written to the socket.
std::string kittyRequest(const std::string& command, const Json& payload);

/// Whether an answer has come to its end.
bool isWholeKittyAnswer(std::string_view answer);

/// The "data" of an answer, which is null for many commands; nothing when the command was refused.
std::optional<Json> kittyAnswer(std::string_view answer);

/// The windows in the data of "ls", which is JSON in a text. Odd entries are skipped.
std::vector<KittyWindow> kittyWindows(const Json& data);

/// The window that the user types into: shown in the desktop's active window when that is known,
/// else by kitty's own word. Null when there is none, or more than one.
const KittyWindow* frontOf(const std::vector<KittyWindow>& windows,
                           const std::optional<DesktopWindow>& active);

}  // namespace zelvane
