// Where programs lie that the user installed, besides the folders of PATH.
#pragma once

#include <string>
#include <vector>

namespace zelvane::platform {

/// Absolute paths, in the order in which to look. Empty where PATH tells a program of the desktop
/// everything.
std::vector<std::string> programFolders();

}  // namespace zelvane::platform
