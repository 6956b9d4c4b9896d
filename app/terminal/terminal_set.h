// All terminal programs together, and tmux between them and the sessions. One thread at a time.
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "core/localization.h"

#include "app/terminal/desktop.h"
#include "app/terminal/place.h"
#include "app/terminal/terminal.h"
#include "app/terminal/terminal_host.h"
#include "app/terminal/tmux.h"

namespace zelvane {

/// What a set is made of.
struct TerminalParts {
  ProcessWorld processes;
  std::unique_ptr<Desktop> desktop;  ///< null where windows are out of reach
  std::unique_ptr<Tmux> tmux;
  /// In the order in which they are asked whether they own a place.
  std::vector<std::unique_ptr<TerminalHost>> hosts;
  /// Opens a window of any terminal when no session is near.
  std::function<bool(const OpenRequest&)> openAnywhere = [](const auto&) { return false; };
  /// What the user can do about terminals whose windows are out of reach.
  std::string adviceWhereHidden =
      L("이 데스크톱은 다른 프로그램의 창을 보여 주지 않아요. X11 이나 sway 에서는 "
        "탭까지 찾아가요.");
};

/// The calls are those of `Terminal`.
class TerminalSet {
 public:
  explicit TerminalSet(TerminalParts parts) : parts_(std::move(parts)) {}

  Titles titles(const std::vector<TerminalSession>& sessions);
  std::optional<std::string> frontTTY(const std::vector<TerminalSession>& sessions);
  TerminalResult jump(const TerminalSession& session);
  TerminalResult open(const OpenRequest& request, const std::optional<TerminalSession>& near);
  std::vector<Support> support(const std::vector<TerminalSession>& sessions);

 private:
  /// What terminal programs draw, tmux looked through.
  struct Drawn {
    std::vector<Place> places;
    std::map<std::string, std::string> shows;  ///< tty of a tmux client: tty of the pane it shows
    std::vector<TmuxClient> clients;           ///< those behind `shows`
  };

  void beginCall();
  std::vector<Place> placesOf(const std::vector<TerminalSession>& sessions) const;
  Drawn drawnBy(const std::vector<Place>& places);
  TerminalHost* hostOf(const Place& place) const;
  std::map<TerminalHost*, std::vector<Place>> byHost(const std::vector<Place>& places) const;
  void addWindowTitles(Titles& titles, const std::vector<Place>& places);
  bool isReachable() { return parts_.desktop && parts_.desktop->isReachable(); }
  bool noTerminalIsInFront();
  std::optional<std::string> frontOf(const Drawn& drawn);
  std::optional<std::string> frontByWindow(const std::vector<Place>& places,
                                           const DesktopWindow& active);
  std::optional<std::string> frontByTmux(const Drawn& drawn);
  TerminalResult raise(const Place& place);
  bool isFrontOf(const Place& place, const SelectedTab& selected);
  bool canBeSeen(const Place& place);
  void markOutOfSight(std::vector<TmuxClient>& clients);
  std::optional<DesktopWindow> windowFor(const Place& place, const SelectedTab& selected);
  Support supportOf(const Place& place);
  Support tmuxSupport(const Drawn& drawn);
  TerminalResult openNear(const OpenRequest& request, const Place& place);

  TerminalParts parts_;
  std::set<std::int32_t> seenUnfocused_;  ///< tmux clients whose focus is known to be followed
};

}  // namespace zelvane
