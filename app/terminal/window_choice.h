// Which window a tty is in, by what windows and processes tell of themselves. Pure.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "app/terminal/desktop.h"
#include "app/terminal/place.h"

namespace zelvane {

/// The window that the place is in: one of its nearest ancestor that has any. Of several it is the
/// one that the variable WINDOWID names. Null when that is not told.
const DesktopWindow* windowOf(const Place& place, const std::vector<DesktopWindow>& windows);

/// Whether each window of the program, by its command name, shows one terminal for all its life.
bool hasNoTabs(std::string_view program);

/// The tty that the window shows, when there is no doubt: it is the only one that can be in the
/// window. `all` are the places of every tty of the machine.
std::optional<std::string> onlyTTYIn(const DesktopWindow& window,
                                     const std::vector<DesktopWindow>& windows,
                                     const std::vector<Place>& all);

}  // namespace zelvane
