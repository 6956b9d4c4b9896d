#include "app/terminal/wezterm.h"

#include <algorithm>
#include <iterator>
#include <set>

#include "core/time.h"

#include "app/terminal/programs.h"

namespace zelvane {
namespace {

constexpr Seconds limit{2};

/// One place of each instance: places that name the same socket are in the same.
std::vector<Place> onePerInstance(const std::vector<Place>& places) {
  std::vector<Place> list;
  std::set<std::int32_t> seen;
  std::copy_if(places.begin(), places.end(), std::back_inserter(list),
               [&](const Place& place) { return seen.insert(place.owner().pid).second; });
  return list;
}

std::vector<std::string> commandLine(const std::vector<std::string>& words) {
  std::vector<std::string> line{"cli", "--no-auto-start"};
  line.insert(line.end(), words.begin(), words.end());
  return line;
}

/// The variable that names the socket of the instance that the place is in, when it is known.
std::vector<std::string> socketOf(const Place& place) {
  const auto socket = place.variable("WEZTERM_UNIX_SOCKET");
  if (socket.empty()) return {};
  return {"WEZTERM_UNIX_SOCKET=" + socket};
}

}  // namespace

std::vector<WezTermPane> weztermPanes(std::string_view output) {
  std::vector<WezTermPane> panes;
  const auto list = parseJson(output);
  if (!list || !list->is_array()) return panes;
  for (const auto& entry : *list) {
    const auto id = get::integral(entry, "pane_id");
    const auto window = get::integral(entry, "window_id");
    const auto tty = get::str(entry, "tty_name");
    if (!id || !window || !tty || !isTTYPath(*tty)) continue;
    panes.push_back({*id, *window, *tty, withoutControls(get::str(entry, "title").value_or("")),
                     withoutControls(get::str(entry, "window_title").value_or(""))});
  }
  return panes;
}

std::optional<std::string> WezTermHost::ask(const Place& near,
                                            const std::vector<std::string>& words) {
  if (silent_) return std::nullopt;
  auto answer = askProgram("wezterm", commandLine(words), limit, socketOf(near));
  silent_ = !answer;
  return answer;
}

std::vector<WezTermPane> WezTermHost::list(const Place& near) {
  return weztermPanes(ask(near, {"list", "--format", "json"}).value_or(""));
}

std::optional<WezTermPane> WezTermHost::paneOf(const Place& place) {
  for (auto& pane : list(place)) {
    if (pane.tty == place.tty) return std::move(pane);
  }
  return std::nullopt;
}

Titles WezTermHost::titles(const std::vector<Place>& places) {
  Titles titles;
  for (const auto& place : onePerInstance(places)) {
    for (const auto& pane : list(place)) {
      if (!pane.title.empty()) titles[pane.tty] = pane.title;
    }
  }
  return titles;
}

std::optional<std::string> WezTermHost::front(const std::vector<Place>& places,
                                              const std::optional<DesktopWindow>& active) {
  if (!active || places.empty()) return std::nullopt;
  const auto panes = list(places.front());
  std::set<std::int64_t> windows;
  for (const auto& pane : panes) windows.insert(pane.window);
  if (windows.size() != 1) return std::nullopt;
  const auto clients =
      parseJson(ask(places.front(), {"list-clients", "--format", "json"}).value_or(""));
  if (!clients || !clients->is_array() || clients->size() != 1) return std::nullopt;
  const auto focused = get::integral(clients->front(), "focused_pane_id");
  for (const auto& pane : panes) {
    if (focused == pane.id) return pane.tty;
  }
  return std::nullopt;
}

std::optional<SelectedTab> WezTermHost::select(const Place& place) {
  const auto pane = paneOf(place);
  if (!pane || !ask(place, {"activate-pane", "--pane-id", std::to_string(pane->id)})) {
    return std::nullopt;
  }
  return SelectedTab{std::nullopt, pane->windowTitle};
}

bool WezTermHost::open(const OpenRequest& request, const Place& near) {
  const auto pane = paneOf(near);
  if (!pane) return false;
  std::vector<std::string> words{"spawn", "--window-id",  std::to_string(pane->window),
                                 "--cwd", request.folder, "--"};
  words.insert(words.end(), request.argv.begin(), request.argv.end());
  return tellProgram("wezterm", commandLine(words), limit, socketOf(near));
}

Support WezTermHost::support(const Place& place) {
  const bool answers = paneOf(place).has_value();
  return {name(), answers, answers, answers, answers, ""};
}

}  // namespace zelvane
