// What the file looks like that a system reads at login, and where it looks for it. Both systems'
// formats are plain text functions; which one counts is chosen with the system.
#pragma once

#include <optional>
#include <string>

namespace zelvane {

struct LoginFormat {
  std::string path;                             ///< where the system looks, absolute
  std::string (*text)(const std::string& app);  ///< the file that opens the application
  std::optional<std::string> (*target)(
      const std::string& text);  ///< what a file opens; nothing when damaged
};

/// The format of the running system.
LoginFormat systemLoginFormat();

/// A launch agent: a property list that has the system's open command open the application.
std::string launchAgentText(const std::string& app);
/// The last of its program's arguments.
std::optional<std::string> launchAgentTarget(const std::string& text);

/// An XDG autostart entry that runs the application.
std::string autostartText(const std::string& app);
/// The program that it runs.
std::optional<std::string> autostartTarget(const std::string& text);

}  // namespace zelvane
