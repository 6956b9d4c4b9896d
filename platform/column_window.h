// What the column's window asks of the window system beyond what the toolkit offers. Main thread.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

namespace zelvane::platform {

/// Name of the toolkit's window system that the column is made for, as the toolkit spells it.
std::string columnWindowSystem();

/// Name of the one that pictures are drawn with: it needs no display.
std::string pictureWindowSystem();

/// Whether the column must be one of the toolkit's tool windows to leave the focus alone.
bool columnIsToolWindow();

/// Whether that window system can be reached now. The toolkit ends the process when it cannot.
bool columnWindowSystemReachable();

/// The column's window as the window system sees it.
class ColumnWindow {
 public:
  /// The window with the toolkit's native id; nothing when the toolkit runs on another window
  /// system, or the connection fails. The window must exist already and outlive the object.
  static std::unique_ptr<ColumnWindow> of(std::string_view windowSystem, std::uint64_t window);
  ~ColumnWindow();
  ColumnWindow(const ColumnWindow&) = delete;
  ColumnWindow& operator=(const ColumnWindow&) = delete;

  /// Puts the window on every desktop and keeps it out of task bars and pagers. Before it is shown.
  void standAside();
  /// Brings the shown window before the others, where showing it does not; the keyboard stays where
  /// it is.
  void comeForward();
  /// Whether the window has a frame only some time after the toolkit asked for it.
  bool grantsFramesLater() const;
  /// Which edge of the picture stays where it is when the height changes, the lower or the upper
  /// one, until the toolkit draws it anew.
  void holdPictureBelow(bool below);
  /// Lets the toolkit change the window's flags, and does again what it undoes by that.
  void change(const std::function<void()>& byToolkit);
  /// Keeps a popup of the toolkit's, a menu, from taking the focus when it is clicked. Its native
  /// id; before it is shown.
  void leaveFocusAlone(std::uint64_t popup);
  /// Notes which window has the keyboard, before the toolkit asks for it.
  void borrowKeyboard();
  /// Whether it has come since then, however short; the toolkit believes so at once.
  bool keyboardCame();
  /// Takes the keyboard where that request was not granted; a moment after it.
  void insistOnKeyboard();
  /// Hands the keyboard back to the window that was noted, if this one still has it.
  void returnKeyboard();
  /// Hands it back where that was not granted; a moment later.
  void insistOnReturn();
  /// Whether translucent pixels of a window really let through what lies behind.
  bool translucencyWorks() const;
  /// Whether opaque windows in front hide all of it. Errs to "no".
  bool covered() const;

 private:
  struct State;
  explicit ColumnWindow(std::unique_ptr<State> state);
  std::unique_ptr<State> state_;
};

}  // namespace zelvane::platform
