// The windows of the desktop, as far as it shows them to others: which is in front, raising one.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace zelvane {

struct DesktopWindow {
  std::uint64_t id = 0;  ///< the desktop's own
  std::int32_t pid = 0;  ///< 0 when it does not tell
  std::string title;     ///< without control characters
  /// The id that programs call the window by (WINDOWID), when it is an X window.
  std::optional<std::uint32_t> xWindow;

  bool operator==(const DesktopWindow&) const = default;
};

/// One connection to the desktop, opened when needed and opened anew when it was lost. One thread
/// at a time. Every call ends within a second; a failure yields nothing.
class Desktop {
 public:
  Desktop() = default;
  Desktop(const Desktop&) = delete;
  Desktop& operator=(const Desktop&) = delete;
  virtual ~Desktop() = default;

  /// Whether the desktop tells about windows at all.
  virtual bool isReachable() = 0;
  /// Whether that is all windows: where there are others, no active window means nothing.
  virtual bool showsEverything() const { return true; }
  /// The windows of this machine's programs.
  virtual std::vector<DesktopWindow> windows() = 0;
  /// The window that has the keyboard; nothing when none has.
  virtual std::optional<DesktopWindow> active() = 0;
  /// Brings the window to the front, from other desktops and from the task bar too; true once it
  /// has the keyboard.
  virtual bool raise(const DesktopWindow& window) = 0;
};

}  // namespace zelvane
