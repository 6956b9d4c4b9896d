// Home folder and shell of the user this process runs as.
#pragma once

#include <string>

namespace zelvane::platform {

/// Absolute path without trailing slash, from the user database (not from $HOME); "/" when the
/// user has no entry there.
std::string homeFolder();

/// Path of the user's login shell, from the user database; "/bin/sh" when none is named there.
std::string loginShell();

}  // namespace zelvane::platform
