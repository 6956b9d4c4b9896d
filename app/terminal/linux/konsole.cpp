#include "app/terminal/linux/konsole.h"

#include <algorithm>
#include <limits>
#include <set>

#include "core/localization.h"

#include "app/terminal/linux/open_window.h"
#include "app/terminal/programs.h"

namespace zelvane {
namespace {

std::string serviceOf(const Place& place) {
  return "org.kde.konsole-" + std::to_string(place.owner().pid);
}

std::set<std::string> servicesOf(const std::vector<Place>& places) {
  std::set<std::string> services;
  for (const auto& place : places) services.insert(serviceOf(place));
  return services;
}

BusObject windowObject(const std::string& service, std::int32_t window) {
  return {service, "/Windows/" + std::to_string(window), "org.kde.konsole.Window"};
}

BusObject sessionObject(const std::string& service, std::int64_t session) {
  return {service, "/Sessions/" + std::to_string(session), "org.kde.konsole.Session"};
}

BusObject mainWindow(const std::string& service, std::int32_t window, const char* interface) {
  return {service, "/konsole/MainWindow_" + std::to_string(window), interface};
}

}  // namespace

std::vector<std::int32_t> childNumbers(std::string_view introspection, std::string_view prefix) {
  std::vector<std::int32_t> numbers;
  const std::string start = "<node name=\"" + std::string(prefix);
  while (true) {
    const auto found = introspection.find(start);
    if (found == introspection.npos) break;
    introspection.remove_prefix(found + start.size());
    const auto number = decimal(introspection.substr(0, introspection.find('"')));
    if (number && *number >= 0 && *number <= std::numeric_limits<std::int32_t>::max()) {
      numbers.push_back(static_cast<std::int32_t>(*number));
    }
  }
  std::sort(numbers.begin(), numbers.end());
  return numbers;
}

std::vector<std::int32_t> KonsoleHost::windowsOf(const std::string& service) {
  if (!bus_->hasOwner(service)) return {};
  const BusObject all{service, "/Windows", "org.freedesktop.DBus.Introspectable"};
  return childNumbers(bus_->call(all, "Introspect").text().value_or(""), "");
}

/// Konsole numbers its windows on and on, the toolkit gives numbers again that came free. Only
/// while the two lists agree does a number mean the same window in both.
bool KonsoleHost::windowsAreNumberedAlike(const std::string& service) {
  const BusObject all{service, "/konsole", "org.freedesktop.DBus.Introspectable"};
  return childNumbers(bus_->call(all, "Introspect").text().value_or(""), "MainWindow_") ==
         windowsOf(service);
}

std::optional<std::string> KonsoleHost::ttyOf(const std::string& service, std::int32_t session) {
  const auto pid = bus_->call(sessionObject(service, session), "processId").number();
  if (!pid || *pid < 1 || *pid > std::numeric_limits<std::int32_t>::max()) return std::nullopt;
  const auto shell = world_.info(static_cast<std::int32_t>(*pid));
  return shell ? shell->tty : std::nullopt;
}

std::vector<KonsoleHost::Tab> KonsoleHost::tabsOf(const std::string& service) {
  std::vector<Tab> tabs;
  for (const auto window : windowsOf(service)) {
    for (const auto& text : bus_->call(windowObject(service, window), "sessionList").texts()) {
      const auto session = static_cast<std::int32_t>(decimal(text).value_or(0));
      if (auto tty = ttyOf(service, session)) tabs.push_back({window, session, std::move(*tty)});
    }
  }
  return tabs;
}

std::optional<KonsoleHost::Tab> KonsoleHost::tabOf(const std::string& service, const Place& place) {
  for (auto& tab : tabsOf(service)) {
    if (tab.tty == place.tty) return std::move(tab);
  }
  return std::nullopt;
}

/// Whether a tab is called what the program in it or the user says. The usual format names the
/// folder and the program, whatever the program says.
bool KonsoleHost::hasOwnTitle(const std::string& service, std::int32_t session) {
  constexpr std::int32_t local = 0;
  const auto format = bus_->call(sessionObject(service, session), "tabTitleFormat", local).text();
  return format && (format->find("%w") != format->npos || format->find('%') == format->npos);
}

Titles KonsoleHost::titles(const std::vector<Place>& places) {
  Titles titles;
  for (const auto& service : servicesOf(places)) {
    for (const auto& tab : tabsOf(service)) {
      if (!hasOwnTitle(service, tab.session)) continue;
      constexpr std::int32_t shown = 1;  // 0 is the one that the profile began with
      auto title = bus_->call(sessionObject(service, tab.session), "title", shown).text();
      if (title && !title->empty()) titles[tab.tty] = withoutControls(*title);
    }
  }
  return titles;
}

std::optional<std::uint32_t> KonsoleHost::xWindowOf(const std::string& service,
                                                    std::int32_t window) {
  const auto id = bus_->call(mainWindow(service, window, "org.kde.KMainWindow"), "winId").number();
  if (!id || *id < 1 || *id > std::numeric_limits<std::uint32_t>::max()) return std::nullopt;
  return static_cast<std::uint32_t>(*id);
}

bool KonsoleHost::isInFront(const std::string& service, std::int32_t window,
                            const std::optional<DesktopWindow>& active) {
  if (active && active->xWindow) return xWindowOf(service, window) == active->xWindow;
  return bus_->call(mainWindow(service, window, "org.freedesktop.DBus.Properties"), "Get",
                    {"org.qtproject.Qt.QWidget", "isActiveWindow"})
             .number() == 1;
}

std::optional<std::string> KonsoleHost::front(const std::vector<Place>& places,
                                              const std::optional<DesktopWindow>& active) {
  for (const auto& service : servicesOf(places)) {
    const auto windows = windowsOf(service);
    if (windows.empty() || !windowsAreNumberedAlike(service)) continue;
    for (const auto window : windows) {
      if (!isInFront(service, window, active)) continue;
      const auto session = bus_->call(windowObject(service, window), "currentSession").number();
      return session ? ttyOf(service, static_cast<std::int32_t>(*session)) : std::nullopt;
    }
  }
  return std::nullopt;
}

std::optional<SelectedTab> KonsoleHost::select(const Place& place) {
  const auto service = serviceOf(place);
  const auto tab = tabOf(service, place);
  if (!tab || !bus_->call(windowObject(service, tab->window), "setCurrentSession", tab->session)) {
    return std::nullopt;
  }
  SelectedTab selected;
  if (windowsAreNumberedAlike(service)) selected.xWindow = xWindowOf(service, tab->window);
  return selected;
}

bool KonsoleHost::open(const OpenRequest& request, const Place& near) {
  const auto service = serviceOf(near);
  const auto tab = canBeTyped(request) ? tabOf(service, near) : std::nullopt;
  if (!tab) return openWindowOf("konsole", request);
  const auto window = windowObject(service, tab->window);
  const std::vector<std::string> standardProfile{"", request.folder};
  const auto session = bus_->call(window, "newSession", standardProfile).number();
  if (!session) return false;
  const std::vector<std::string> typed{shellCommand(request.folder, request.argv)};
  // Unanswered, it may still be on its way.
  const bool told =
      bus_->call(sessionObject(service, *session), "runCommand", typed) || bus_->isSilent(service);
  (void)bus_->call(window, "setCurrentSession", static_cast<std::int32_t>(*session));
  return told;
}

Support KonsoleHost::support(const Place& place) {
  const auto tab = tabOf(serviceOf(place), place);
  if (!tab) return {name()};
  const bool titled = hasOwnTitle(serviceOf(place), tab->session);
  return {name(),
          titled,
          true,
          true,
          true,
          titled
              ? ""
              : L("Konsole 프로필의 탭 제목 형식을 %w 로 바꾸면 프로그램이 정한 제목이 보여요.")};
}

}  // namespace zelvane
