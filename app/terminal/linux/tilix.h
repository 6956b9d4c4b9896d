// Tilix, over the session bus. It selects and raises a tab when told to, and tells nothing.
#pragma once

#include <memory>

#include "app/terminal/linux/bus.h"
#include "app/terminal/terminal_host.h"

namespace zelvane {

class TilixHost : public TerminalHost {
 public:
  explicit TilixHost(std::shared_ptr<Bus> bus) : bus_(std::move(bus)) {}

  std::string name() const override { return "Tilix"; }
  bool raisesItself() const override { return true; }
  void beginCall() override { bus_->forgive(); }
  bool owns(const Place& place) const override { return place.owner().name == "tilix"; }
  Titles titles(const std::vector<Place>&) override { return {}; }
  std::optional<std::string> front(const std::vector<Place>&,
                                   const std::optional<DesktopWindow>&) override {
    return std::nullopt;
  }
  std::optional<SelectedTab> select(const Place& place) override;
  bool open(const OpenRequest& request, const Place& near) override;
  Support support(const Place& place) override;

 private:
  std::shared_ptr<Bus> bus_;
};

}  // namespace zelvane
