#include "app/terminal/linux/open_window.h"

#include <algorithm>
#include <array>
#include <optional>
#include <vector>

#include "core/paths.h"
#include "core/text.h"

#include "app/terminal/linux/start_apart.h"
#include "app/terminal/place.h"
#include "app/terminal/programs.h"

namespace zelvane {
namespace {

/// How a terminal program is told what to run: all of them start in the folder they are started in.
struct Manner {
  const char* program;
  std::vector<std::string> words;  ///< before the command
  bool asText = false;             ///< whether the command is one word, quoted as for a shell
};

const std::array<Manner, 15>& manners() {
  static const std::array<Manner, 15> list = {{{"kitty", {}},
                                               {"alacritty", {"-e"}},
                                               {"foot", {}},
                                               {"xfce4-terminal", {"--tab", "-x"}},
                                               {"terminator", {"--new-tab", "-x"}},
                                               {"gnome-terminal", {"--"}},
                                               {"konsole", {"-e"}},
                                               {"tilix", {"--action=app-new-session", "-e"}, true},
                                               {"ptyxis", {"--tab", "--"}},
                                               {"wezterm", {"start", "--"}},
                                               {"mate-terminal", {"-x"}},
                                               {"ghostty", {"-e"}},
                                               {"urxvt", {"-e"}},
                                               {"st", {"-e"}},
                                               {"xterm", {"-e"}}}};
  return list;
}

const Manner* mannerOf(const std::string& program) {
  const auto command = commandOf(program);
  const auto found = std::find_if(manners().begin(), manners().end(),
                                  [&](const Manner& one) { return one.program == command; });
  return found == manners().end() ? nullptr : &*found;
}

/// xterm and its like hand a single word to a shell.
std::vector<std::string> wordsFor(const Manner& manner, const OpenRequest& request) {
  auto words = manner.words;
  if (manner.asText) {
    std::string text;
    for (const auto& word : request.argv) text += (text.empty() ? "" : " ") + shellQuote(word);
    words.push_back(std::move(text));
    return words;
  }
  if (request.argv.size() == 1) words.emplace_back("env");
  words.insert(words.end(), request.argv.begin(), request.argv.end());
  return words;
}

/// A terminal that is started without a display ends at once, and nobody hears of it.
bool hasDisplay() { return ZelvanePaths::env("DISPLAY") || ZelvanePaths::env("WAYLAND_DISPLAY"); }

}  // namespace

std::vector<std::string> windowWords(const std::string& program, const OpenRequest& request) {
  const auto* manner = mannerOf(program);
  return manner ? wordsFor(*manner, request) : std::vector<std::string>();
}

bool canOpenWindowOf(const std::string& program) {
  const auto* manner = mannerOf(program);
  return manner && hasDisplay() && programPath(manner->program);
}

bool openWindowOf(const std::string& program, const OpenRequest& request) {
  const auto* manner = mannerOf(program);
  return manner && hasDisplay() &&
         startApart(manner->program, wordsFor(*manner, request), request.folder);
}

bool openAnyWindow(const OpenRequest& request) {
  if (openWindowOf(request.program, request)) return true;
  if (!hasDisplay()) return false;
  const Manner standard{"x-terminal-emulator", {"-e"}};
  if (startApart(standard.program, wordsFor(standard, request), request.folder)) return true;
  for (const auto& manner : manners()) {
    if (openWindowOf(manner.program, request)) return true;
  }
  return false;
}

}  // namespace zelvane
