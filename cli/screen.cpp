#include "cli/screen.h"

#include <cerrno>
#include <csignal>
#include <termios.h>
#include <unistd.h>

namespace zelvane::cli {
namespace {

// Alternate screen, no cursor, no wrapping; and back.
constexpr std::string_view enter = "\x1b[?1049h\x1b[?25l\x1b[?7l";
constexpr std::string_view leave = "\x1b[?7h\x1b[?25h\x1b[?1049l";
// Terminals that know it show what lies between at once; the others ignore it.
constexpr std::string_view beginFrame = "\x1b[?2026h";
constexpr std::string_view endFrame = "\x1b[?2026l";
constexpr std::string_view home = "\x1b[H";
constexpr std::string_view clearLine = "\x1b[K";
constexpr std::string_view clearBelow = "\x1b[J";

termios found{};  // the signal handler needs it, too
bool foundKnown = false;

// These two and what they call may run in a signal handler.

void takeTerminal() {
  // In the background this stops the program until it is in front, before it draws anything.
  termios silent = found;
  silent.c_lflag &= ~static_cast<tcflag_t>(ECHO);
  if (foundKnown) tcsetattr(STDOUT_FILENO, TCSANOW, &silent);
  [[maybe_unused]] const auto written = write(STDOUT_FILENO, enter.data(), enter.size());
}

void giveTerminalBack() {
  [[maybe_unused]] const auto written = write(STDOUT_FILENO, leave.data(), leave.size());
  // What was typed meanwhile was meant for nobody.
  if (foundKnown) tcsetattr(STDOUT_FILENO, TCSAFLUSH, &found);
}

void suspend(int) {
  const int before = errno;
  giveTerminalBack();
  raise(SIGSTOP);
  takeTerminal();
  raise(SIGWINCH);
  errno = before;
}

}  // namespace

std::string frame(const std::vector<std::string>& lines, int rows) {
  const auto places = static_cast<std::size_t>(rows);
  std::string text{beginFrame};
  text += home;
  for (std::size_t i = 0; i < lines.size() && i < places; ++i) {
    if (i > 0) text += "\r\n";
    // Cleared first: after a line that fills the row the cursor still stands on its last character.
    text += clearLine;
    text += i + 1 == places && lines.size() > places ? "…" : lines[i];
  }
  if (lines.size() < places) text.append(lines.empty() ? "" : "\r\n").append(clearBelow);
  return text.append(endFrame);
}

Screen::Screen() {
  foundKnown = tcgetattr(STDOUT_FILENO, &found) == 0;
  takeTerminal();
  struct sigaction action {};
  sigaction(SIGTSTP, nullptr, &action);
  if (action.sa_handler == SIG_IGN) return;  // nobody could continue it
  action.sa_handler = suspend;
  action.sa_flags = SA_RESTART;
  sigaction(SIGTSTP, &action, nullptr);
}

Screen::~Screen() {
  std::signal(SIGTSTP, SIG_DFL);
  giveTerminalBack();
}

Written Screen::show(const std::vector<std::string>& lines) {
  const auto size = terminalSize();
  return writeOut(frame(lines, size.value_or(TerminalSize()).rows));
}

}  // namespace zelvane::cli
