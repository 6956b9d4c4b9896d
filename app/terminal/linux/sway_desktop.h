// The windows of a sway desktop, over its own socket.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "core/json_file.h"

#include "app/terminal/desktop.h"

namespace zelvane {

/// A window of sway's tree, and whether it has the keyboard.
struct SwayWindow {
  DesktopWindow window;
  bool focused = false;
};

/// The windows in the tree that sway describes itself by.
std::vector<SwayWindow> swayWindows(const Json& tree);

class SwayDesktop : public Desktop {
 public:
  explicit SwayDesktop(std::string socket) : socket_(std::move(socket)) {}

  bool isReachable() override;
  std::vector<DesktopWindow> windows() override;
  std::optional<DesktopWindow> active() override;
  bool raise(const DesktopWindow& window) override;

 private:
  enum class Kind : std::uint32_t { command = 0, tree = 4 };
  std::optional<Json> ask(Kind kind, std::string_view text) const;
  std::vector<SwayWindow> list() const;

  std::string socket_;
};

}  // namespace zelvane
