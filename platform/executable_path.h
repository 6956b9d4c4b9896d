// Where the running program lies.
#pragma once

#include <string>

namespace zelvane::platform {

/// Absolute path of this process's program file, links resolved; empty when the system does not
/// tell.
std::string executablePath();

}  // namespace zelvane::platform
