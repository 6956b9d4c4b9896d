// tmux: a layer between sessions and the programs that draw its clients.
#pragma once

#include <string>
#include <vector>

#include "app/terminal/place.h"
#include "app/terminal/terminal_host.h"
#include "app/terminal/tmux_rows.h"

namespace zelvane {

/// The tmux servers that places lie in. Stateless; any thread. Each call starts one process, which
/// is ended when it has not answered within two seconds.
class Tmux {
 public:
  Tmux() = default;
  Tmux(const Tmux&) = delete;
  Tmux& operator=(const Tmux&) = delete;
  virtual ~Tmux() = default;

  /// The socket of the server that the place lies in; empty when it lies in none, or none is found.
  virtual std::string serverOf(const Place& place);
  /// What the server tells now; empty when it does not answer or tmux cannot be run.
  virtual TmuxListing list(const std::string& server);
  /// Makes the client show the pane; both must be set. A zoomed pane stays zoomed.
  virtual bool select(const std::string& server, const TmuxTarget& target);
  /// Opens a window in the pane's session and shows it there.
  virtual bool open(const std::string& server, const TmuxPane& pane, const OpenRequest& request);
};

}  // namespace zelvane
