#include "app/terminal/linux/gnome_terminal.h"

#include <algorithm>

#include "core/localization.h"

#include "app/terminal/linux/start_apart.h"
#include "app/terminal/programs.h"

namespace zelvane {
namespace {

const BusObject& search() {
  static const BusObject object{"org.gnome.Terminal", "/org/gnome/Terminal/SearchProvider",
                                "org.gnome.Shell.SearchProvider2"};
  return object;
}

/// The tab's id; empty when the process was not told.
std::string idOf(const Place& place) {
  const auto path = place.variable("GNOME_TERMINAL_SCREEN");
  auto id = path.substr(path.rfind('/') + 1);
  std::replace(id.begin(), id.end(), '_', '-');
  return id;
}

}  // namespace

std::map<std::string, std::string> GnomeTerminalHost::names(const std::vector<std::string>* ids) {
  std::map<std::string, std::string> names;
  if (!bus_->hasOwner(search().name)) return names;
  const auto wanted =
      ids ? *ids : bus_->callWithList(search(), "GetInitialResultSet", {""}).texts();
  if (wanted.empty()) return names;
  for (const auto& record : bus_->callWithList(search(), "GetResultMetas", wanted).records()) {
    const auto id = record.find("id");
    const auto name = record.find("name");
    if (id == record.end() || name == record.end()) continue;
    names[id->second] = withoutControls(name->second);
  }
  return names;
}

Titles GnomeTerminalHost::titles(const std::vector<Place>& places) {
  std::vector<std::string> ids;
  for (const auto& place : places) {
    if (auto id = idOf(place); !id.empty()) ids.push_back(std::move(id));
  }
  const auto known = names(&ids);
  Titles titles;
  for (const auto& place : places) {
    const auto name = known.find(idOf(place));
    if (name != known.end() && !name->second.empty()) titles[place.tty] = name->second;
  }
  return titles;
}

std::optional<std::string> GnomeTerminalHost::front(const std::vector<Place>& places,
                                                    const std::optional<DesktopWindow>& active) {
  if (!active) return std::nullopt;
  // A window is called what its tab is called: only a name that one tab alone has tells which.
  std::string front;
  for (const auto& [id, name] : names(nullptr)) {
    if (name != active->title) continue;
    if (!front.empty()) return std::nullopt;
    front = id;
  }
  for (const auto& place : places) {
    if (!front.empty() && idOf(place) == front) return place.tty;
  }
  return std::nullopt;
}

std::optional<SelectedTab> GnomeTerminalHost::select(const Place& place) {
  const std::vector<std::string> id{idOf(place)};
  const auto known = names(&id);
  // It answers alike when it knows no such tab.
  if (!known.contains(id.front()) || !bus_->activateResult(search(), id.front())) {
    return std::nullopt;
  }
  return SelectedTab{std::nullopt, known.at(id.front()), true};
}

bool GnomeTerminalHost::open(const OpenRequest& request, const Place& near) {
  std::vector<std::string> words{"--tab", "--working-directory=" + request.folder, "--"};
  words.insert(words.end(), request.argv.begin(), request.argv.end());
  // Without the two of a living tab it opens a window.
  std::vector<std::string> environment;
  for (const char* variable : {"GNOME_TERMINAL_SCREEN", "GNOME_TERMINAL_SERVICE"}) {
    const auto value = near.variable(variable);
    if (!value.empty()) environment.push_back(std::string(variable) + "=" + value);
  }
  return startApart("gnome-terminal", words, request.folder, std::move(environment));
}

Support GnomeTerminalHost::support(const Place&) {
  const bool opens = programPath("gnome-terminal").has_value();
  if (!names(nullptr).empty()) return {name(), true, true, true, opens, ""};
  return {name(),
          false,
          false,
          false,
          opens,
          LF("%@ 를 실행하고 그놈 터미널 창을 모두 닫았다가 다시 열면 탭까지 찾아가요.",
             {"gsettings set org.gnome.Terminal.Legacy.Settings shell-integration-enabled true"})};
}

}  // namespace zelvane
