// "zelvane connect", "disconnect" and "status": the connection with Claude Code.
#pragma once

#include <optional>
#include <string>

#include "core/installer/installer.h"
#include "core/time.h"

#include "cli/exit_code.h"
#include "cli/listing.h"

namespace zelvane::cli {

/// Puts the helper in place and our hooks into Claude Code's settings; prints what happened.
ExitCode connect();
/// Takes both out again; prints what happened.
ExitCode disconnect();
/// Prints how the connection stands. Ends well only when connected.
ExitCode status(Format format);

/// How the connection stands.
struct ConnectionStatus {
  Installer::State state = Installer::State::notConnected;
  std::string settings;               ///< path
  std::string helper;                 ///< path of its folder
  std::optional<std::int64_t> build;  ///< of the installed helper, when it says
  std::optional<Time> lastHook;       ///< when a record was last written
  bool hooksDisabled = false;         ///< the user switched all hooks off in the settings
  std::string otherFolder;  ///< where Claude Code is told to look instead; empty when nowhere else
};

/// Why nothing may come although all is in place: a line each, or nothing.
std::string hints(const ConnectionStatus& status);

std::string statusText(const ConnectionStatus& status, Time now);
std::string statusJson(const ConnectionStatus& status);

}  // namespace zelvane::cli
