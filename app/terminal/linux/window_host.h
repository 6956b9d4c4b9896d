// Every terminal program that has no door of its own: what can be had from its windows alone.
#pragma once

#include "app/terminal/terminal_host.h"

namespace zelvane {

/// Knows no tabs: titles, front and jump come from the windows, which the set itself looks at.
class WindowHost : public TerminalHost {
 public:
  std::string name() const override { return {}; }
  bool owns(const Place& place) const override { return !place.ancestors.empty(); }
  Titles titles(const std::vector<Place>&) override { return {}; }
  std::optional<std::string> front(const std::vector<Place>&,
                                   const std::optional<DesktopWindow>&) override {
    return std::nullopt;
  }
  std::optional<SelectedTab> select(const Place&) override { return std::nullopt; }
  bool open(const OpenRequest& request, const Place& near) override;
  Support support(const Place& place) override;
};

}  // namespace zelvane
