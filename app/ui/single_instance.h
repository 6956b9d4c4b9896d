// Sees to it that one column runs per user.
#pragma once

#include <functional>
#include <string>

#include "core/time.h"

namespace zelvane {

/// The file whose lock the running column holds: one for each user, whatever the environment says.
std::string instanceLockPath();

/// Takes the lock for the life of the process. While another column holds it, waits for that one to
/// end, at most 3 seconds, so that one that is just quitting may do so. False when it stays.
[[nodiscard]] bool becomeSingleInstance(const std::string& lockPath,
                                        const std::function<void(Seconds)>& sleep);

}  // namespace zelvane
