#include "app/terminal/linux/start_apart.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <unistd.h>

#include "platform/child_process.h"
#include "platform/process_environment.h"

#include "core/time.h"

#include "app/terminal/programs.h"

namespace zelvane {
namespace {

/// Whether a variable tells where this process sits, or for what it was started: what runs in
/// another terminal would believe it.
bool tellsOfHere(std::string_view name) {
  constexpr std::array<std::string_view, 16> whole = {"ZELVANE_SNAPSHOT",
                                                      "CLAUDE_CODE_ENTRYPOINT",
                                                      "CLAUDE_CODE_SSE_PORT",
                                                      "TMUX",
                                                      "TMUX_PANE",
                                                      "STY",
                                                      "KITTY_PID",
                                                      "KITTY_WINDOW_ID",
                                                      "KITTY_LISTEN_ON",
                                                      "KITTY_PUBLIC_KEY",
                                                      "WEZTERM_PANE",
                                                      "WEZTERM_UNIX_SOCKET",
                                                      "TILIX_ID",
                                                      "WINDOWID",
                                                      "VTE_VERSION",
                                                      "COLORTERM"};
  constexpr std::array<std::string_view, 7> starts = {
      "CLAUDECODE", "CLAUDE_CODE_SESSION_", "KONSOLE_", "GNOME_TERMINAL_", "ALACRITTY_",
      "ZELLIJ",     "TERM_PROGRAM"};
  return std::find(whole.begin(), whole.end(), name) != whole.end() ||
         std::any_of(starts.begin(), starts.end(),
                     [&](std::string_view start) { return name.starts_with(start); });
}

}  // namespace

std::string forgettingWords(const Environment& inherited, const std::vector<std::string>& added) {
  const auto isIdentifier = [](std::string_view name) {
    return std::all_of(name.begin(), name.end(), [](unsigned char c) {
      return c == '_' || (c < 0x80 && std::isalnum(c) != 0);
    });
  };
  std::string words;
  for (const auto& variable : inherited) {
    const auto& name = variable.first;
    const bool isAdded = std::any_of(added.begin(), added.end(), [&](const std::string& entry) {
      return entry.starts_with(name + "=");
    });
    if (tellsOfHere(name) && isIdentifier(name) && !isAdded) words += " " + name;
  }
  return words.empty() ? words : "unset" + words + "; ";
}

bool startApart(const std::string& name, const std::vector<std::string>& arguments,
                const std::string& folder, std::vector<std::string> environment) {
  const auto program = programPath(name);
  if (!program) return false;
  // The words are the shell's parameters, never its text. Not by its "&", which would have the
  // program, and all that runs in it, ignore Ctrl-C.
  const auto inherited = parseEnvironment(platform::processEnvironment(getpid()));
  std::vector<std::string> words{
      "-c", forgettingWords(inherited, environment) + "exec setsid --fork \"$@\" >/dev/null 2>&1",
      "sh", *program};
  words.insert(words.end(), arguments.begin(), arguments.end());
  constexpr Seconds limit{5};
  return platform::runChild({"/bin/sh", words, folder, std::move(environment), limit}).status == 0;
}

}  // namespace zelvane
