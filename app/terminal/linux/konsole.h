// Konsole, over the session bus: windows, their sessions, and which of them is shown.
#pragma once

#include <memory>

#include "app/terminal/linux/bus.h"
#include "app/terminal/terminal_host.h"

namespace zelvane {

/// The numbers of the children of an object whose names begin with the prefix, out of the text in
/// which the bus describes it: of "Window_1" and "Window_12", 1 and 12. Sorted.
std::vector<std::int32_t> childNumbers(std::string_view introspection, std::string_view prefix);

class KonsoleHost : public TerminalHost {
 public:
  KonsoleHost(ProcessWorld world, std::shared_ptr<Bus> bus)
      : world_(std::move(world)), bus_(std::move(bus)) {}

  std::string name() const override { return "Konsole"; }
  void beginCall() override { bus_->forgive(); }
  bool owns(const Place& place) const override { return place.owner().name == "konsole"; }
  Titles titles(const std::vector<Place>& places) override;
  std::optional<std::string> front(const std::vector<Place>& places,
                                   const std::optional<DesktopWindow>& active) override;
  std::optional<SelectedTab> select(const Place& place) override;
  bool open(const OpenRequest& request, const Place& near) override;
  Support support(const Place& place) override;

 private:
  struct Tab {
    std::int32_t window = 0;
    std::int32_t session = 0;
    std::string tty;
  };
  std::vector<std::int32_t> windowsOf(const std::string& service);
  std::vector<Tab> tabsOf(const std::string& service);
  std::optional<Tab> tabOf(const std::string& service, const Place& place);
  std::optional<std::string> ttyOf(const std::string& service, std::int32_t session);
  bool hasOwnTitle(const std::string& service, std::int32_t session);
  bool windowsAreNumberedAlike(const std::string& service);
  std::optional<std::uint32_t> xWindowOf(const std::string& service, std::int32_t window);
  bool isInFront(const std::string& service, std::int32_t window,
                 const std::optional<DesktopWindow>& active);

  ProcessWorld world_;
  std::shared_ptr<Bus> bus_;
};

}  // namespace zelvane
