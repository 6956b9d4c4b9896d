#include "app/terminal/kitty.h"

#include "platform/local_socket.h"

#include "core/localization.h"
#include "core/paths.h"

namespace zelvane {
namespace {

constexpr Seconds limit{0.8};
/// For a command that starts a process before it is answered: given up too early, it would happen
/// twice.
constexpr Seconds launchLimit{3};

/// The socket of the kitty that draws the place. One that was started in a tab of another without
/// a socket of its own has inherited the other's.
std::string socketOf(const Place& place) {
  if (decimal(place.variable("KITTY_PID")) != place.owner().pid) return {};
  return kittyAddress(place.variable("KITTY_LISTEN_ON"));
}

std::set<std::string> socketsOf(const std::vector<Place>& places) {
  std::set<std::string> sockets;
  for (const auto& place : places) {
    if (auto socket = socketOf(place); !socket.empty()) sockets.insert(std::move(socket));
  }
  return sockets;
}

}  // namespace

bool KittyHost::owns(const Place& place) const { return place.owner().name == "kitty"; }

std::optional<Json> KittyHost::ask(const std::string& socket, const std::string& command,
                                   const Json& payload, Seconds timeout) {
  if (socket.empty() || silent_.contains(socket)) return std::nullopt;
  const auto answer =
      platform::askLocalSocket(socket, kittyRequest(command, payload), timeout, isWholeKittyAnswer);
  if (!answer) silent_.insert(socket);
  return answer ? kittyAnswer(*answer) : std::nullopt;
}

std::vector<KittyWindow> KittyHost::list(const std::string& socket) {
  const auto data = ask(socket, "ls", Json(), limit);
  return data ? kittyWindows(*data) : std::vector<KittyWindow>();
}

Titles KittyHost::titles(const std::vector<Place>& places) {
  Titles titles;
  for (const auto& socket : socketsOf(places)) {
    for (const auto& window : list(socket)) {
      const auto shell = world_.info(window.pid);
      if (shell && shell->tty && !window.title.empty()) titles[*shell->tty] = window.title;
    }
  }
  return titles;
}

std::optional<std::string> KittyHost::front(const std::vector<Place>& places,
                                            const std::optional<DesktopWindow>& active) {
  std::optional<std::string> front;
  for (const auto& socket : socketsOf(places)) {
    const auto windows = list(socket);
    const auto* window = frontOf(windows, active);
    if (!window) continue;
    const auto shell = world_.info(window->pid);
    if (front || !shell) return std::nullopt;
    front = shell->tty;
  }
  return front;
}

std::optional<KittyWindow> KittyHost::windowOf(const Place& place) {
  for (auto& window : list(socketOf(place))) {
    const auto shell = world_.info(window.pid);
    if (shell && shell->tty == place.tty) return std::move(window);
  }
  return std::nullopt;
}

std::optional<SelectedTab> KittyHost::select(const Place& place) {
  const auto window = windowOf(place);
  if (!window) return std::nullopt;
  const Json payload = {{"match", "id:" + std::to_string(window->id)}};
  if (!ask(socketOf(place), "focus-window", payload, limit)) return std::nullopt;
  return SelectedTab{window->xWindow, window->title};
}

bool KittyHost::open(const OpenRequest& request, const Place& near) {
  if (const auto window = windowOf(near)) {
    const Json payload = {{"args", request.argv},
                          {"type", "tab"},
                          {"cwd", request.folder},
                          {"match", "window_id:" + std::to_string(window->id)}};
    const auto socket = socketOf(near);
    // Unanswered, it may still be on its way.
    if (ask(socket, "launch", payload, launchLimit) || silent_.contains(socket)) return true;
  }
  return openWindow_(request);
}

Support KittyHost::support(const Place& place) {
  const auto socket = socketOf(place);
  if (ask(socket, "ls", Json(), limit)) return {name(), true, true, true, true, ""};
  const auto folder = ZelvanePaths::env("XDG_RUNTIME_DIR").value_or(ZelvanePaths::home());
  return {name(),
          false,
          false,
          false,
          false,
          LF("kitty.conf에 allow_remote_control socket-only 와 listen_on unix:%@/kitty 두 줄을 "
             "넣고 kitty를 다시 켜면 탭까지 찾아가요.",
             {folder})};
}

}  // namespace zelvane
