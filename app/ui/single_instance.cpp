#include "app/ui/single_instance.h"

#include <cerrno>

#include "core/file_lock.h"
#include "core/paths.h"
#include "core/private_folder.h"

namespace zelvane {

std::string instanceLockPath() {
  (void)makePrivateFolder(Paths::zelvane());
  return Paths::zelvane() + "/zelvane.lock";
}

bool becomeSingleInstance(const std::string& lockPath, const std::function<void(Seconds)>& sleep) {
  constexpr int patience = 12;
  constexpr Seconds pause(0.25);
  for (int waits = 0;; ++waits) {
    // The descriptor stays open, and so the lock held, until the process ends.
    if (FileLock::acquire(lockPath, FileLock::Wait::no)) return true;
    // Better two columns than none for somebody whose folder takes no lock file.
    if (errno != EWOULDBLOCK) return true;
    if (waits == patience) return false;
    sleep(pause);
  }
}

}  // namespace zelvane
