// The windows of an X desktop, as its window manager tells of them.
#pragma once

#include <vector>

#include "app/terminal/desktop.h"
#include "app/terminal/linux/x11_connection.h"

namespace zelvane {

class X11Desktop : public Desktop {
 public:
  bool isReachable() override;
  bool showsEverything() const override;
  std::vector<DesktopWindow> windows() override;
  std::optional<DesktopWindow> active() override;
  bool raise(const DesktopWindow& window) override;

 private:
  std::optional<xcb_window_t> activeId();
  std::vector<DesktopWindow> described(const std::vector<xcb_window_t>& ids);

  X11Connection connection_;
};

}  // namespace zelvane
