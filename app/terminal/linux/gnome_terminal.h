// GNOME Terminal, through what it offers to the desktop's search: every tab by id, name and jump.
// It offers that only when told to; without, it can only be seen from outside.
#pragma once

#include <memory>

#include "app/terminal/linux/bus.h"
#include "app/terminal/terminal_host.h"

namespace zelvane {

class GnomeTerminalHost : public TerminalHost {
 public:
  explicit GnomeTerminalHost(std::shared_ptr<Bus> bus) : bus_(std::move(bus)) {}

  std::string name() const override { return "GNOME Terminal"; }
  bool callsWindowsLikeTheirTabs() const override { return true; }
  bool raisesItself() const override { return true; }
  void beginCall() override { bus_->forgive(); }
  bool owns(const Place& place) const override { return place.owner().name == "gnome-terminal-"; }
  Titles titles(const std::vector<Place>& places) override;
  std::optional<std::string> front(const std::vector<Place>& places,
                                   const std::optional<DesktopWindow>& active) override;
  std::optional<SelectedTab> select(const Place& place) override;
  bool open(const OpenRequest& request, const Place& near) override;
  Support support(const Place& place) override;

 private:
  /// Names of tabs by their ids; `ids` null means all tabs.
  std::map<std::string, std::string> names(const std::vector<std::string>* ids);

  std::shared_ptr<Bus> bus_;
};

}  // namespace zelvane
