// The folder in which the user's programs keep what the user made with them.
#pragma once

#include <string>

namespace zelvane::platform {

/// Absolute path without trailing slash. The folder may not exist yet.
std::string dataFolder();

}  // namespace zelvane::platform
