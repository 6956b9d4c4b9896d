#include "cli/output.h"

#include <cerrno>
#include <csignal>
#include <poll.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

#include "core/file_writing.h"
#include "core/localization.h"
#include "core/paths.h"
#include "core/unicode.h"

namespace zelvane::cli {
std::optional<TerminalSize> terminalSize() {
  if (!isatty(STDOUT_FILENO)) return std::nullopt;
  winsize window{};
  TerminalSize size;
  if (ioctl(STDOUT_FILENO, TIOCGWINSZ, &window) != 0) return size;
  if (window.ws_col > 0) size.columns = window.ws_col;
  if (window.ws_row > 0) size.rows = window.ws_row;
  return size;
}

bool terminalIsCapable() {
  const auto kind = ZelvanePaths::env("TERM");
  return terminalSize() && kind && *kind != "dumb";
}

Look outputLook() {
  const auto size = terminalSize();
  const bool colours = terminalIsCapable() && !ZelvanePaths::env("NO_COLOR");
  return {.columns = size ? std::optional(size->columns) : std::nullopt,
          .colours = colours ? Colours::yes : Colours::no};
}

Written writeOut(std::string_view text) {
  std::signal(SIGPIPE, SIG_IGN);
  if (writeAll(STDOUT_FILENO, text)) return Written::all;
  return errno == EPIPE ? Written::closed : Written::failed;
}

ExitCode exitCode(Written written) {
  if (written != Written::failed) return fine;
  writeError(L("결과를 쓰지 못했어요.") + "\n");
  return failed;
}

void tell(const std::optional<std::string>& sentence) {
  if (sentence) writeError(printable(*sentence) + "\n");
}

void writeError(std::string_view text) { (void)writeAll(STDERR_FILENO, text); }

void whenOutputCloses(std::function<void()> closed) {
  struct stat info {};
  if (fstat(STDOUT_FILENO, &info) != 0) return;
  if (!S_ISFIFO(info.st_mode) && !S_ISSOCK(info.st_mode)) return;
  std::thread([closed = std::move(closed)] {
    pollfd waits{STDOUT_FILENO, 0, 0};  // errors and hang-ups are always reported
    while (poll(&waits, 1, -1) < 0 && errno == EINTR) continue;
    closed();
  }).detach();
}

}  // namespace zelvane::cli
