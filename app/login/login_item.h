// Opens the application when the user logs in: a file that the system reads at login. Whether it is
// on is whether that file is there. Main thread.
#pragma once

#include <iosfwd>
#include <optional>
#include <string>

#include "app/login/login_format.h"

namespace zelvane::LoginItem {

/// Where the file lies; ZELVANE_LAUNCHAGENT replaces it, also when it is set but empty.
std::string path();
bool isOn();
/// The application that the file opens; nothing when there is none that can be read.
std::optional<std::string> target();

/// Writes or removes the file. What the system refuses stays as it is.
void set(bool on, const std::string& appPath);
/// Lets the item follow an application that was moved, when that is clearly what the user wants;
/// whether it rewrote the file.
bool repairIfMoved(const std::string& appPath);

/// Checks these rules in a scratch folder and prints a line for each; true when all hold. Changes
/// the process's environment: nothing else may run.
bool selfTest(std::ostream& out);

}  // namespace zelvane::LoginItem
