#include "app/terminal/window_choice.h"

#include <algorithm>
#include <array>

namespace zelvane {
namespace {

std::vector<const DesktopWindow*> windowsOf(std::int32_t pid,
                                            const std::vector<DesktopWindow>& windows) {
  std::vector<const DesktopWindow*> own;
  for (const auto& window : windows) {
    if (window.pid == pid) own.push_back(&window);
  }
  return own;
}

}  // namespace

const DesktopWindow* windowOf(const Place& place, const std::vector<DesktopWindow>& windows) {
  for (const auto& ancestor : place.ancestors) {
    const auto own = windowsOf(ancestor.pid, windows);
    if (own.empty()) continue;
    const auto named = decimal(place.variable("WINDOWID"));
    for (const auto* window : own) {
      if (named && window->xWindow && *window->xWindow == *named) return window;
    }
    return own.size() == 1 ? own.front() : nullptr;
  }
  return nullptr;
}

bool hasNoTabs(std::string_view program) {
  constexpr std::array<std::string_view, 6> names = {"xterm", "alacritty", "st",
                                                     "urxvt", "urxvtd",    "foot"};
  return std::find(names.begin(), names.end(), program) != names.end();
}

std::optional<std::string> onlyTTYIn(const DesktopWindow& window,
                                     const std::vector<DesktopWindow>& windows,
                                     const std::vector<Place>& all) {
  if (window.pid < 1) return std::nullopt;
  const bool isOnlyWindow = windowsOf(window.pid, windows).size() == 1;
  std::optional<std::string> only;
  for (const auto& place : all) {
    if (!isUnder(place, window.pid)) continue;
    // Where there are tabs, one may have been moved since WINDOWID was set.
    const bool telling = isOnlyWindow || hasNoTabs(place.owner().name);
    const auto* its = telling ? windowOf(place, windows) : nullptr;
    if (its && its->id != window.id) continue;
    // One that may be in any of several windows may be in this one.
    if (!its || only) return std::nullopt;
    only = place.tty;
  }
  return only;
}

}  // namespace zelvane
