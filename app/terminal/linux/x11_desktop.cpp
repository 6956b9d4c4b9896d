#include "app/terminal/linux/x11_desktop.h"

#include <array>
#include <chrono>
#include <poll.h>
#include <unistd.h>

#include "core/paths.h"
#include "core/unicode.h"

#include "app/terminal/place.h"

namespace zelvane {
namespace {

constexpr std::size_t mostWindows = 1000;
constexpr std::uint32_t onEveryDesktop = 0xffffffff;

std::string machineName() {
  std::array<char, 256> name{};
  return gethostname(name.data(), name.size() - 1) == 0 ? name.data() : "";
}

std::string fromLatin(std::string_view bytes) {
  std::u32string text;
  for (const char byte : bytes) text += static_cast<unsigned char>(byte);
  return utf8(text);
}

std::uint32_t first(const std::vector<std::uint32_t>& values) {
  return values.empty() ? 0 : values.front();
}

}  // namespace

bool X11Desktop::isReachable() {
  const BrokenPipeIgnored guard;
  return connection_.open();
}

bool X11Desktop::showsEverything() const { return !ZelvanePaths::env("WAYLAND_DISPLAY"); }

std::vector<DesktopWindow> X11Desktop::windows() {
  const BrokenPipeIgnored guard;
  if (!connection_.open()) return {};
  auto ids = connection_.values(connection_.ask(connection_.root(), XAtom::clientList));
  if (ids.size() > mostWindows) ids.resize(mostWindows);
  return described(ids);
}

std::vector<DesktopWindow> X11Desktop::described(const std::vector<xcb_window_t>& ids) {
  // All questions go out before the first answer is read.
  struct Asked {
    unsigned pid, machine, name, oldName;
  };
  std::vector<Asked> asked;
  for (const auto id : ids) {
    asked.push_back({connection_.ask(id, XAtom::pid), connection_.ask(id, XAtom::machine),
                     connection_.ask(id, XAtom::name), connection_.ask(id, XAtom::oldName)});
  }
  const auto here = machineName();
  std::vector<DesktopWindow> windows;
  for (std::size_t i = 0; i < ids.size(); ++i) {
    const auto pid = first(connection_.values(asked[i].pid));
    const auto machine = connection_.text(asked[i].machine);
    auto name = connection_.text(asked[i].name);
    bool isLatin = false;
    const auto oldName = connection_.text(asked[i].oldName, &isLatin);
    if (name.empty()) name = isLatin ? fromLatin(oldName) : oldName;
    const bool isElsewhere = !machine.empty() && machine != here;
    windows.push_back(
        {ids[i], isElsewhere ? 0 : static_cast<std::int32_t>(pid), withoutControls(name), ids[i]});
  }
  return windows;
}

std::optional<xcb_window_t> X11Desktop::activeId() {
  const auto id =
      first(connection_.values(connection_.ask(connection_.root(), XAtom::activeWindow)));
  return id ? std::optional(id) : std::nullopt;
}

std::optional<DesktopWindow> X11Desktop::active() {
  const BrokenPipeIgnored guard;
  if (!connection_.open()) return std::nullopt;
  const auto id = activeId();
  if (!id) return std::nullopt;
  return described({*id}).front();
}

bool X11Desktop::raise(const DesktopWindow& window) {
  const BrokenPipeIgnored guard;
  if (!window.xWindow || !connection_.open()) return false;
  const auto id = *window.xWindow;
  const auto desktop = connection_.values(connection_.ask(id, XAtom::desktop));
  const auto current =
      connection_.values(connection_.ask(connection_.root(), XAtom::currentDesktop));
  // Some window managers leave windows of other desktops where they are, unless asked to go there.
  if (!desktop.empty() && !current.empty() && desktop != current &&
      desktop.front() != onEveryDesktop) {
    connection_.tellManager(connection_.root(), XAtom::currentDesktop,
                            {desktop.front(), 0, 0, 0, 0});
  }
  constexpr std::uint32_t asPager = 2;
  connection_.tellManager(id, XAtom::activeWindow, {asPager, 0, 0, 0, 0});
  constexpr int rounds = 100;
  constexpr int pauseMilliseconds = 2;
  for (int round = 0; round < rounds; ++round) {
    if (activeId() == id) return true;
    poll(nullptr, 0, pauseMilliseconds);
  }
  return false;
}

}  // namespace zelvane
