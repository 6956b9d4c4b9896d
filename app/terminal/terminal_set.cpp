#include "app/terminal/terminal_set.h"

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <thread>

#include "core/localization.h"
#include "core/text.h"
#include "core/unicode.h"

#include "app/terminal/window_choice.h"

namespace zelvane {
namespace {

constexpr int deepestNesting = 4;

TerminalResult outOfReach(bool selected) {
  return {false, selected ? L("탭은 골랐지만 이 데스크톱에서는 창을 앞으로 가져올 수 없어요.")
                          : L("이 데스크톱에서는 다른 창을 앞으로 가져올 수 없어요.")};
}

/// A path that cannot be shown as it is cannot be pasted, either.
std::string adviceToAttach(const std::string& server, const std::string& session) {
  if (printable(server) != server) return L("이 세션의 tmux를 보여 주는 창이 없어요.");
  return LF("이 세션의 tmux를 보여 주는 창이 없어요. 터미널에서 %@ 로 열 수 있어요.",
            {"tmux -S " + shellQuote(server) + " attach -t " + shellQuote(session)});
}

}  // namespace

void TerminalSet::beginCall() {
  for (const auto& host : parts_.hosts) host->beginCall();
}

std::vector<Place> TerminalSet::placesOf(const std::vector<TerminalSession>& sessions) const {
  std::vector<Place> places;
  for (const auto& session : sessions) {
    if (!isTTYPath(session.tty)) continue;
    places.push_back(placeOf(parts_.processes, session.pid, session.tty));
  }
  return places;
}

TerminalSet::Drawn TerminalSet::drawnBy(const std::vector<Place>& places) {
  Drawn drawn;
  std::set<std::string> asked;
  auto open = places;
  for (int depth = 0; depth < deepestNesting && !open.empty(); ++depth) {
    std::vector<Place> next;
    for (auto& place : open) {
      if (!isTmuxServer(place.owner().name)) {
        drawn.places.push_back(std::move(place));
        continue;
      }
      const auto server = parts_.tmux->serverOf(place);
      if (server.empty() || !asked.insert(server).second) continue;
      for (const auto& client : parts_.tmux->list(server).clients) {
        drawn.shows[client.tty] = client.paneTTY;
        drawn.clients.push_back(client);
        next.push_back(placeOf(parts_.processes, client.pid, client.tty));
      }
    }
    open = std::move(next);
  }
  return drawn;
}

TerminalHost* TerminalSet::hostOf(const Place& place) const {
  for (const auto& host : parts_.hosts) {
    if (host->owns(place)) return host.get();
  }
  return nullptr;
}

std::map<TerminalHost*, std::vector<Place>> TerminalSet::byHost(
    const std::vector<Place>& places) const {
  std::map<TerminalHost*, std::vector<Place>> map;
  for (const auto& place : places) {
    if (auto* host = hostOf(place)) map[host].push_back(place);
  }
  return map;
}

Titles TerminalSet::titles(const std::vector<TerminalSession>& sessions) {
  beginCall();
  Titles titles;
  std::vector<Place> outside;
  std::set<std::string> asked;
  for (auto& place : placesOf(sessions)) {
    if (!isTmuxServer(place.owner().name)) {
      outside.push_back(std::move(place));
      continue;
    }
    const auto server = parts_.tmux->serverOf(place);
    if (server.empty() || !asked.insert(server).second) continue;
    for (const auto& pane : parts_.tmux->list(server).panes) {
      if (!pane.title.empty()) titles[pane.tty] = pane.title;
    }
  }
  for (const auto& [host, places] : byHost(outside)) titles.merge(host->titles(places));
  addWindowTitles(titles, outside);
  return titles;
}

/// A window with one tab is called what its tab is called, in some programs.
void TerminalSet::addWindowTitles(Titles& titles, const std::vector<Place>& places) {
  const bool missing = std::any_of(places.begin(), places.end(),
                                   [&](const Place& place) { return !titles.contains(place.tty); });
  if (!missing || !isReachable()) return;
  const auto windows = parts_.desktop->windows();
  const auto all = allPlaces(parts_.processes);
  for (const auto& place : places) {
    const auto* host = hostOf(place);
    const bool tells = hasNoTabs(place.owner().name) || (host && host->callsWindowsLikeTheirTabs());
    if (!tells || titles.contains(place.tty)) continue;
    const auto* window = windowOf(place, windows);
    if (!window || window->title.empty()) continue;
    if (onlyTTYIn(*window, windows, all) == place.tty) titles[place.tty] = window->title;
  }
}

std::optional<std::string> TerminalSet::frontTTY(const std::vector<TerminalSession>& sessions) {
  beginCall();
  if (sessions.empty() || noTerminalIsInFront()) return std::nullopt;
  const auto drawn = drawnBy(placesOf(sessions));
  auto tty = frontOf(drawn);
  for (int depth = 0; tty && depth < deepestNesting; ++depth) {
    const auto pane = drawn.shows.find(*tty);
    if (pane == drawn.shows.end()) break;
    tty = pane->second;
  }
  const bool isOurs = tty && std::any_of(sessions.begin(), sessions.end(),
                                         [&](const auto& one) { return one.tty == *tty; });
  return isOurs ? tty : std::nullopt;
}

/// Looking at processes is cheaper than asking tmux, which starts one.
bool TerminalSet::noTerminalIsInFront() {
  if (!isReachable() || !parts_.desktop->showsEverything()) return false;
  const auto active = parts_.desktop->active();
  return !active || active->pid < 1 || !drawsAnyTTY(parts_.processes, active->pid);
}

std::optional<std::string> TerminalSet::frontOf(const Drawn& drawn) {
  if (drawn.places.empty()) return std::nullopt;
  if (isReachable()) {
    const auto active = parts_.desktop->active();
    if (active) return frontByWindow(drawn.places, *active);
    if (parts_.desktop->showsEverything()) return std::nullopt;
  }
  // Where the desktop tells nothing, a terminal may still know that it has the keyboard.
  std::optional<std::string> front;
  for (const auto& [host, places] : byHost(drawn.places)) {
    auto tty = host->front(places, std::nullopt);
    if (tty && front) return std::nullopt;
    if (tty) front = std::move(tty);
  }
  return front ? front : frontByTmux(drawn);
}

std::optional<std::string> TerminalSet::frontByWindow(const std::vector<Place>& places,
                                                      const DesktopWindow& active) {
  if (active.pid < 1) return std::nullopt;
  std::vector<Place> inFront;
  std::copy_if(places.begin(), places.end(), std::back_inserter(inFront),
               [&](const Place& place) { return isUnder(place, active.pid); });
  if (inFront.empty()) return std::nullopt;
  if (auto* host = hostOf(inFront.front())) {
    if (auto tty = host->front(inFront, active)) return tty;
  }
  return onlyTTYIn(active, parts_.desktop->windows(), allPlaces(parts_.processes));
}

/// tmux calls a client focused that it never heard of since it attached: only one that was seen
/// without focus before is believed.
std::optional<std::string> TerminalSet::frontByTmux(const Drawn& drawn) {
  std::optional<std::string> front;
  bool doubt = false;
  for (const auto& client : drawn.clients) {
    if (!client.focusKnown) continue;
    if (!client.focused) {
      seenUnfocused_.insert(client.pid);
    } else if (front || !seenUnfocused_.contains(client.pid)) {
      doubt = true;
    } else {
      front = client.tty;
    }
  }
  return doubt ? std::nullopt : front;
}

TerminalResult TerminalSet::jump(const TerminalSession& session) {
  beginCall();
  const auto process = parts_.processes.info(session.pid);
  if (!isTTYPath(session.tty) || !process || process->tty != session.tty) {
    return {false, L("이 세션의 터미널을 찾지 못했어요.")};
  }
  auto place = placeOf(parts_.processes, session.pid, session.tty);
  for (int depth = 0; depth < deepestNesting && isTmuxServer(place.owner().name); ++depth) {
    const auto server = parts_.tmux->serverOf(place);
    auto listing = server.empty() ? TmuxListing() : parts_.tmux->list(server);
    markOutOfSight(listing.clients);
    const auto target = targetOf(listing, place.tty);
    if (!target) return {false, L("tmux가 대답하지 않아요.")};
    if (!target->client) {
      return {false, adviceToAttach(server, target->pane->session)};
    }
    if (!parts_.tmux->select(server, *target)) return {false, L("tmux가 대답하지 않아요.")};
    place = placeOf(parts_.processes, target->client->pid, target->client->tty);
  }
  return raise(place);
}

/// Whether a window of the desktop may show the place: one that is known, or, where not all are
/// known, one of a program that draws.
bool TerminalSet::canBeSeen(const Place& place) {
  if (isTmuxServer(place.owner().name)) return true;
  const bool reachable = isReachable();
  if (reachable) {
    const auto windows = parts_.desktop->windows();
    if (std::any_of(windows.begin(), windows.end(),
                    [&](const auto& window) { return isUnder(place, window.pid); })) {
      return true;
    }
  }
  return !(reachable && parts_.desktop->showsEverything()) && !terminalProgram(place).empty();
}

/// With one client there is no choice, and nothing to be looked at.
void TerminalSet::markOutOfSight(std::vector<TmuxClient>& clients) {
  if (clients.size() < 2) return;
  for (auto& client : clients) {
    if (!canBeSeen(placeOf(parts_.processes, client.pid, client.tty))) client.outOfSight = true;
  }
}

/// The window of the selected tab; else the one that the place must be in.
std::optional<DesktopWindow> TerminalSet::windowFor(const Place& place,
                                                    const SelectedTab& selected) {
  const auto windows = parts_.desktop->windows();
  for (const auto& window : windows) {
    if (selected.xWindow && window.xWindow == selected.xWindow) return window;
  }
  std::vector<DesktopWindow> titled;
  std::copy_if(windows.begin(), windows.end(), std::back_inserter(titled), [&](const auto& one) {
    return one.pid == place.owner().pid && one.title == selected.title;
  });
  if (titled.size() == 1) return titled.front();
  const auto* window = windowOf(place, windows);
  return window ? std::optional(*window) : std::nullopt;
}

/// A program that raises its windows itself is given a moment to be obeyed. Of its several windows
/// it is the one that is called like the tab.
bool TerminalSet::isFrontOf(const Place& place, const SelectedTab& selected) {
  constexpr int rounds = 50;
  constexpr auto pause = std::chrono::milliseconds(4);
  const auto pid = place.owner().pid;
  const auto windows = parts_.desktop->windows();
  const bool several = std::count_if(windows.begin(), windows.end(),
                                     [&](const auto& one) { return one.pid == pid; }) > 1;
  for (int round = 0; round < rounds; ++round) {
    const auto active = parts_.desktop->active();
    const bool isNamed =
        !several || selected.title.empty() || (active && active->title == selected.title);
    if (active && active->pid == pid && isNamed) return true;
    std::this_thread::sleep_for(pause);
  }
  return false;
}

TerminalResult TerminalSet::raise(const Place& place) {
  auto* host = hostOf(place);
  const auto selected = host ? host->select(place) : std::nullopt;
  if (!isReachable()) {
    if (selected && selected->raised) return {true};
    return outOfReach(selected.has_value());
  }
  if (selected && selected->raised && isFrontOf(place, *selected)) return {true};
  const auto window = windowFor(place, selected.value_or(SelectedTab()));
  if (!window && !parts_.desktop->showsEverything()) return outOfReach(selected.has_value());
  if (!window) return {false, L("이 세션의 터미널 창을 찾지 못했어요.")};
  const bool isExact =
      selected || onlyTTYIn(*window, parts_.desktop->windows(), allPlaces(parts_.processes));
  if (!parts_.desktop->raise(*window)) return {false, L("터미널 창이 앞으로 나오지 않았어요.")};
  if (isExact) return {true};
  const auto advice = host ? host->support(place).advice : std::string();
  return {false, advice.empty() ? L("이 터미널은 탭을 고를 수 없어서 창만 앞으로 가져왔어요.")
                                : L("창만 앞으로 가져왔어요.") + " " + advice};
}

TerminalResult TerminalSet::open(const OpenRequest& request,
                                 const std::optional<TerminalSession>& near) {
  beginCall();
  std::error_code error;
  if (!request.folder.starts_with('/') || !std::filesystem::is_directory(request.folder, error)) {
    return {false, LF("폴더가 없어요: %@", {withoutControls(request.folder)})};
  }
  if (request.argv.empty() || request.argv.front().empty()) {
    return {false, L("실행할 명령이 없어요.")};
  }
  if (near && isTTYPath(near->tty)) {
    const auto result = openNear(request, placeOf(parts_.processes, near->pid, near->tty));
    if (result.ok) return result;
  }
  if (parts_.openAnywhere(request)) return {true};
  return {false, L("새 탭을 열 수 있는 터미널을 찾지 못했어요.")};
}

TerminalResult TerminalSet::openNear(const OpenRequest& request, const Place& place) {
  if (isTmuxServer(place.owner().name)) {
    const auto server = parts_.tmux->serverOf(place);
    const auto listing = server.empty() ? TmuxListing() : parts_.tmux->list(server);
    const auto target = targetOf(listing, place.tty);
    return {target && parts_.tmux->open(server, *target->pane, request)};
  }
  auto* host = hostOf(place);
  return {host && host->open(request, place)};
}

Support TerminalSet::supportOf(const Place& place) {
  const auto program = place.owner().name;
  auto* host = hostOf(place);
  Support support = host ? host->support(place) : Support{program};
  const bool reachable = isReachable();
  const bool seen = reachable && canBeSeen(place);
  if (hasNoTabs(program)) support.titles = support.front = support.jump = seen;
  if (!endsWalk(program)) support.terminal = L("알 수 없는 터미널");
  if (seen || (host && host->raisesItself())) return support;
  support.jump = false;
  const bool hidden = !(reachable && parts_.desktop->showsEverything());
  if (support.advice.empty() && hidden && !terminalProgram(place).empty()) {
    support.advice = parts_.adviceWhereHidden;
  }
  return support;
}

Support TerminalSet::tmuxSupport(const Drawn& drawn) {
  const bool focusKnown = std::any_of(drawn.clients.begin(), drawn.clients.end(),
                                      [](const TmuxClient& client) { return client.focusKnown; });
  Support support{"tmux", true, isReachable() || focusKnown, false, true, ""};
  support.jump = std::any_of(drawn.places.begin(), drawn.places.end(),
                             [&](const Place& place) { return supportOf(place).jump; });
  if (drawn.clients.empty()) {
    support.front = false;
    support.advice = L("tmux를 보여 주는 창이 없어요. 터미널에서 tmux attach 를 하면 찾아가요.");
  } else if (!support.front) {
    support.advice =
        L("tmux.conf에 set -g focus-events on 을 넣으면 어느 탭을 보고 있는지 알 수 있어요.");
  }
  return support;
}

std::vector<Support> TerminalSet::support(const std::vector<TerminalSession>& sessions) {
  beginCall();
  std::vector<Support> all;
  const auto add = [&](const Support& support) {
    if (std::find(all.begin(), all.end(), support) == all.end()) all.push_back(support);
  };
  std::set<std::string> servers;
  for (const auto& place : placesOf(sessions)) {
    const bool inTmux = isTmuxServer(place.owner().name);
    if (inTmux && !servers.insert(parts_.tmux->serverOf(place)).second) continue;
    const auto drawn = drawnBy({place});
    if (inTmux) add(tmuxSupport(drawn));
    for (const auto& one : drawn.places) add(supportOf(one));
  }
  return all;
}

}  // namespace zelvane
