#include "app/terminal/tmux.h"

#include <algorithm>

#include "platform/process_environment.h"

#include "app/terminal/programs.h"

namespace zelvane {
namespace {

constexpr Seconds limit{2};

/// `-u`: outside UTF-8 tmux writes "_" for what is not ASCII, and for the tabs between columns.
std::vector<std::string> onServer(const std::string& server, std::vector<std::string> words) {
  std::vector<std::string> arguments{"-u", "-S", server};
  std::move(words.begin(), words.end(), std::back_inserter(arguments));
  return arguments;
}

}  // namespace

std::string Tmux::serverOf(const Place& place) {
  const auto owner = place.owner();
  if (!isTmuxServer(owner.name)) return {};
  auto socket = tmuxSocket(place.variable("TMUX"), owner.pid);
  if (!socket.empty()) return socket;
  const auto sockets = platform::listeningSockets(owner.pid);
  return sockets.size() == 1 ? sockets.front() : std::string();
}

TmuxListing Tmux::list(const std::string& server) {
  const auto output = askProgram("tmux", onServer(server, tmuxListArguments()), limit);
  return parseTmux(output.value_or(""));
}

bool Tmux::select(const std::string& server, const TmuxTarget& target) {
  const auto& pane = *target.pane;
  const auto where = pane.session + ":" + pane.window + "." + pane.pane;
  return askProgram(
             "tmux",
             onServer(server, {"switch-client", "-Z", "-c", target.client->tty, "-t", where}),
             limit)
      .has_value();
}

bool Tmux::open(const std::string& server, const TmuxPane& pane, const OpenRequest& request) {
  auto words = tmuxOpenArguments(pane, request.folder, request.argv);
  return tellProgram("tmux", onServer(server, std::move(words)), limit);
}

}  // namespace zelvane
