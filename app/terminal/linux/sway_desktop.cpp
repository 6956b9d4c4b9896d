#include "app/terminal/linux/sway_desktop.h"

#include <cstring>
#include <limits>

#include "platform/local_socket.h"

#include "core/time.h"

#include "app/terminal/place.h"

namespace zelvane {
namespace {

constexpr Seconds limit{0.8};
constexpr std::string_view magic = "i3-ipc";
constexpr std::size_t headerSize = magic.size() + 2 * sizeof(std::uint32_t);

/// In the machine's own order of bytes, as the protocol has it.
std::string bytesOf(std::uint32_t number) {
  std::string bytes(sizeof number, '\0');
  std::memcpy(bytes.data(), &number, sizeof number);
  return bytes;
}

bool isWhole(std::string_view answer) {
  if (answer.size() < headerSize) return false;
  std::uint32_t length = 0;
  std::memcpy(&length, answer.data() + magic.size(), sizeof length);
  return answer.size() - headerSize >= length;
}

void addWindows(const Json& node, std::vector<SwayWindow>& windows) {
  const auto id = get::integral(node, "id");
  const auto pid = get::integral(node, "pid");
  if (id && pid && *id > 0 && *pid > 0 && *pid <= std::numeric_limits<std::int32_t>::max()) {
    const Json* focused = get::any(node, "focused");
    const auto xWindow = get::integral(node, "window");
    SwayWindow found;
    found.window = {static_cast<std::uint64_t>(*id), static_cast<std::int32_t>(*pid),
                    withoutControls(get::str(node, "name").value_or("")), std::nullopt};
    if (xWindow && *xWindow > 0 && *xWindow <= std::numeric_limits<std::uint32_t>::max()) {
      found.window.xWindow = static_cast<std::uint32_t>(*xWindow);
    }
    found.focused = focused && *focused == true;
    windows.push_back(std::move(found));
  }
  for (const char* children : {"nodes", "floating_nodes"}) {
    const Json* list = get::list(node, children);
    if (!list) continue;
    for (const auto& child : *list) addWindows(child, windows);
  }
}

}  // namespace

std::vector<SwayWindow> swayWindows(const Json& tree) {
  std::vector<SwayWindow> windows;
  addWindows(tree, windows);
  return windows;
}

std::optional<Json> SwayDesktop::ask(Kind kind, std::string_view text) const {
  const auto request = std::string(magic) + bytesOf(static_cast<std::uint32_t>(text.size())) +
                       bytesOf(static_cast<std::uint32_t>(kind)) + std::string(text);
  const auto answer = platform::askLocalSocket(socket_, request, limit, isWhole);
  return answer ? parseJson(std::string_view(*answer).substr(headerSize)) : std::nullopt;
}

std::vector<SwayWindow> SwayDesktop::list() const {
  const auto tree = ask(Kind::tree, "");
  return tree ? swayWindows(*tree) : std::vector<SwayWindow>();
}

bool SwayDesktop::isReachable() { return !list().empty(); }

std::vector<DesktopWindow> SwayDesktop::windows() {
  std::vector<DesktopWindow> windows;
  for (auto& one : list()) windows.push_back(std::move(one.window));
  return windows;
}

std::optional<DesktopWindow> SwayDesktop::active() {
  for (auto& one : list()) {
    if (one.focused) return std::move(one.window);
  }
  return std::nullopt;
}

bool SwayDesktop::raise(const DesktopWindow& window) {
  if (!ask(Kind::command, "[con_id=" + std::to_string(window.id) + "] focus")) return false;
  const auto now = active();
  return now && now->id == window.id;
}

}  // namespace zelvane
