// Sees to it that one column runs per user.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include "core/file_lock.h"
#include "core/time.h"

namespace zelvane {

/// The file whose lock the running column holds.
std::string instanceLockPath();

/// Takes the lock. While another column holds it, waits for it to end, at most 3 seconds, so that
/// one that is just quitting may do so. Null when it stays.
std::unique_ptr<FileLock::Scope> becomeSingleInstance(const std::string& lockPath,
                                                      const std::function<void(Seconds)>& sleep);

}  // namespace zelvane
