#include "app/terminal/linux/open_window.h"

#include <array>
#include <optional>
#include <vector>

#include "core/paths.h"

#include "app/terminal/linux/start_apart.h"

namespace zelvane {
namespace {

/// How a terminal program is told what to run: all of them start in the folder they are started in.
struct Manner {
  const char* program;
  std::vector<std::string> words;  ///< before the command
};

const std::array<Manner, 12>& manners() {
  static const std::array<Manner, 12> list = {{{"kitty", {}},
                                               {"alacritty", {"-e"}},
                                               {"foot", {}},
                                               {"xfce4-terminal", {"--tab", "-x"}},
                                               {"terminator", {"--new-tab", "-x"}},
                                               {"gnome-terminal", {"--"}},
                                               {"konsole", {"-e"}},
                                               {"ptyxis", {"--tab", "--"}},
                                               {"wezterm", {"start", "--"}},
                                               {"urxvt", {"-e"}},
                                               {"st", {"-e"}},
                                               {"xterm", {"-e"}}}};
  return list;
}

/// The words after the program's name. xterm and its like hand a single word to a shell.
std::vector<std::string> wordsFor(const Manner& manner, const OpenRequest& request) {
  auto words = manner.words;
  if (request.argv.size() == 1) words.emplace_back("env");
  words.insert(words.end(), request.argv.begin(), request.argv.end());
  return words;
}

/// A terminal that is started without a display ends at once, and nobody hears of it.
bool hasDisplay() { return ZelvanePaths::env("DISPLAY") || ZelvanePaths::env("WAYLAND_DISPLAY"); }

}  // namespace

bool openWindowOf(const std::string& program, const OpenRequest& request) {
  if (!hasDisplay()) return false;
  for (const auto& manner : manners()) {
    if (manner.program != program) continue;
    return startApart(program, wordsFor(manner, request), request.folder);
  }
  return false;
}

bool openAnyWindow(const OpenRequest& request) {
  if (!hasDisplay()) return false;
  const Manner standard{"x-terminal-emulator", {"-e"}};
  if (startApart(standard.program, wordsFor(standard, request), request.folder)) return true;
  for (const auto& manner : manners()) {
    if (openWindowOf(manner.program, request)) return true;
  }
  return false;
}

}  // namespace zelvane
