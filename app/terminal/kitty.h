// kitty, over its remote-control socket. Without one it can only be seen from outside.
#pragma once

#include <functional>
#include <set>

#include "core/time.h"

#include "app/terminal/kitty_protocol.h"
#include "app/terminal/terminal_host.h"

namespace zelvane {

class KittyHost : public TerminalHost {
 public:
  /// `openWindow` starts a kitty of its own for who has no socket.
  KittyHost(ProcessWorld world, std::function<bool(const OpenRequest&)> openWindow)
      : world_(std::move(world)), openWindow_(std::move(openWindow)) {}

  std::string name() const override { return "kitty"; }
  bool callsWindowsLikeTheirTabs() const override { return true; }
  void beginCall() override { silent_.clear(); }
  bool owns(const Place& place) const override;
  Titles titles(const std::vector<Place>& places) override;
  std::optional<std::string> front(const std::vector<Place>& places,
                                   const std::optional<DesktopWindow>& active) override;
  std::optional<SelectedTab> select(const Place& place) override;
  bool open(const OpenRequest& request, const Place& near) override;
  Support support(const Place& place) override;

 private:
  /// What the command answers; nothing when it was refused, or the socket did not answer.
  std::optional<Json> ask(const std::string& socket, const std::string& command,
                          const Json& payload, Seconds timeout);
  std::vector<KittyWindow> list(const std::string& socket);
  std::optional<KittyWindow> windowOf(const Place& place);

  ProcessWorld world_;
  std::function<bool(const OpenRequest&)> openWindow_;
  std::set<std::string> silent_;  ///< sockets that did not answer in this call
};

}  // namespace zelvane
