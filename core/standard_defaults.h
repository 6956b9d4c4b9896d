// The saved settings of this user, kept where the system keeps such things.
#pragma once

#include <memory>

#include "core/user_defaults.h"

namespace zelvane {

/// Linux: a file in the XDG configuration folder. macOS: the system's own store, under the
/// application's identifier.
std::shared_ptr<UserDefaults> standardDefaults();

}  // namespace zelvane
