// Apple's Terminal, asked and told by scripts. A tab is known by its tty.
#pragma once

#include <functional>
#include <optional>
#include <string>

#include "core/time.h"

#include "app/terminal/terminal_host.h"

namespace zelvane {

/// The ways to Terminal.
struct AppleTerminalDoors {
  /// Bundle identifier of the application in front; empty when there is none or it has none.
  std::function<std::string()> frontApplication;
  /// What the script returned, run by a program of its own; nothing when it failed or took longer.
  std::function<std::optional<std::string>(const std::string& script, Seconds limit)> ask;
  /// Runs the script within this process, without a time limit; false when it failed.
  std::function<bool(const std::string& script)> run;
};

/// The doors of this machine.
AppleTerminalDoors appleTerminalDoors();

class AppleTerminalHost : public TerminalHost {
 public:
  explicit AppleTerminalHost(AppleTerminalDoors doors) : doors_(std::move(doors)) {}

  std::string name() const override { return "Terminal"; }
  bool raisesItself() const override { return true; }
  bool owns(const Place& place) const override;
  Titles titles(const std::vector<Place>& places) override;
  std::optional<std::string> front(const std::vector<Place>& places,
                                   const std::optional<DesktopWindow>& active) override;
  std::optional<SelectedTab> select(const Place& place) override;
  bool open(const OpenRequest& request, const Place& near) override;
  Support support(const Place& place) override;

  /// Opens a tab without a place to start from, or a window where that cannot be done; starts
  /// Terminal when it does not run.
  static bool openAnywhere(const AppleTerminalDoors& doors, const OpenRequest& request);

 private:
  AppleTerminalDoors doors_;
};

}  // namespace zelvane
