// What tmux tells about its panes and clients, and the choices made of that. Pure.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace zelvane {

/// A pane as one session shows it: linked windows and grouped sessions repeat it.
struct TmuxPane {
  std::string tty;
  std::string session;  ///< "$0"
  std::string window;   ///< "@1"
  std::string pane;     ///< "%4"
  bool attached = false;
  std::string title;  ///< empty when nobody set one
};

/// A terminal that tmux draws on.
struct TmuxClient {
  std::string tty;
  std::int32_t pid = 0;
  std::string session;
  std::int64_t activity = 0;  ///< second of its last key
  bool focusKnown = false;    ///< whether the server asks for focus at all
  bool focused = false;
  std::string paneTTY;  ///< the pane that it shows
  /// Whether nobody can see it here: suspended, or drawn where this desktop has no window.
  bool outOfSight = false;
};

struct TmuxListing {
  std::vector<TmuxPane> panes;
  std::vector<TmuxClient> clients;
};

/// The arguments, after the socket's, whose output `parseTmux` reads.
std::vector<std::string> tmuxListArguments();

/// The arguments, after the socket's, that run the command in the folder (an absolute path) in a
/// new window of the pane's session.
std::vector<std::string> tmuxOpenArguments(const TmuxPane& pane, const std::string& folder,
                                           const std::vector<std::string>& argv);

/// Rows that are cut short or name no proper tty or id are skipped, and so are clients that are
/// programs (control mode).
TmuxListing parseTmux(std::string_view output);

/// The pane with the tty, of several the one in a session that is seen; null when there is none.
const TmuxPane* paneOf(const TmuxListing& listing, std::string_view tty);

/// Where a pane is to be shown: the client and the pane's row in the session for it.
struct TmuxTarget {
  const TmuxPane* pane = nullptr;
  const TmuxClient* client = nullptr;  ///< null when nobody is attached to the server
};

/// Prefers a client that can be seen, then one that shows the pane, then one in a session of the
/// pane's, then the one used last. Nothing when no pane has the tty.
std::optional<TmuxTarget> targetOf(const TmuxListing& listing, std::string_view tty);

/// The socket path in the variable TMUX ("SOCKET,PID,SESSION") when it names that server; else
/// empty.
std::string tmuxSocket(std::string_view variable, std::int32_t server);

}  // namespace zelvane
