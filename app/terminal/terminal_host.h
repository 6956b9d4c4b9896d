// What the terminal programs have in common: one small adapter each, behind this.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "app/terminal/desktop.h"
#include "app/terminal/place.h"

namespace zelvane {

using Titles = std::map<std::string, std::string>;  ///< by tty, without control characters

/// A tab that was selected, and the window that must still be raised for it to be seen.
struct SelectedTab {
  std::optional<std::uint32_t> xWindow{};  ///< the window, when the program told
  std::string title{};                     ///< what that window is called now, when it told
  bool raised = false;  ///< whether the program has seen to it that its window has the keyboard
};

struct OpenRequest {
  std::string folder;
  std::vector<std::string> argv;
  std::string program{};  ///< rather in this terminal program, when a new one is started
};

/// What can be done with one terminal program as it is set up now.
struct Support {
  std::string terminal;  ///< its name
  bool titles = false;   ///< of every tab
  bool front = false;    ///< which tab is in front
  bool jump = false;     ///< to the tab itself; else only its window can be raised, if that
  bool open = false;     ///< a new tab; a window, where there are no tabs
  std::string advice;    ///< what the user can do to unlock the rest; empty when there is nothing

  bool operator==(const Support&) const = default;
};

/// One terminal program. It is asked only about places that it owns, starts nothing by being asked,
/// and answers with nothing when something fails. One thread at a time; each call is limited in
/// time, and a program that did not answer is left alone for the rest of the call.
class TerminalHost {
 public:
  TerminalHost() = default;
  TerminalHost(const TerminalHost&) = delete;
  TerminalHost& operator=(const TerminalHost&) = delete;
  virtual ~TerminalHost() = default;

  virtual std::string name() const = 0;
  /// Whether a window with one tab has that tab's title and no more.
  virtual bool callsWindowsLikeTheirTabs() const { return false; }
  /// Whether it can give its own windows the keyboard.
  virtual bool raisesItself() const { return false; }
  /// A new call of the set's begins: what did not answer before may be asked again.
  virtual void beginCall() {}
  /// Whether the place is in this program. Asks nobody.
  virtual bool owns(const Place& place) const = 0;
  virtual Titles titles(const std::vector<Place>& places) = 0;
  /// The tty of the tab that the user sees and types into. `active` is the window that has the
  /// keyboard and belongs to these places; nothing where the desktop does not tell.
  virtual std::optional<std::string> front(const std::vector<Place>& places,
                                           const std::optional<DesktopWindow>& active) = 0;
  /// Makes the place's tab the one that its window shows.
  virtual std::optional<SelectedTab> select(const Place& place) = 0;
  /// Opens a tab (a window, where there are no tabs) near the place.
  virtual bool open(const OpenRequest& request, const Place& near) = 0;
  virtual Support support(const Place& place) = 0;
};

}  // namespace zelvane
