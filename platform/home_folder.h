// The home folder of the user this process runs as.
#pragma once

#include <string>

namespace zelvane::platform {

/// Absolute path without trailing slash, from the user database (not from $HOME); "/" when the
/// user has no entry there.
std::string homeFolder();

}  // namespace zelvane::platform
