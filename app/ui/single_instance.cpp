#include "app/ui/single_instance.h"

#include <filesystem>

#include "core/paths.h"

namespace zelvane {

std::string instanceLockPath() {
  // The runtime folder is the user's alone and empty after a reboot; the data folder always works.
  std::error_code failed;
  const auto runtime = ZelvanePaths::env("XDG_RUNTIME_DIR");
  if (runtime && std::filesystem::is_directory(*runtime, failed)) return *runtime + "/zelvane.lock";
  std::filesystem::create_directories(ZelvanePaths::zelvane(), failed);
  return ZelvanePaths::zelvane() + "/zelvane.lock";
}

std::unique_ptr<FileLock::Scope> becomeSingleInstance(const std::string& lockPath,
                                                      const std::function<void(Seconds)>& sleep) {
  constexpr int patience = 12;
  constexpr Seconds pause(0.25);
  for (int waits = 0;; ++waits) {
    auto lock = std::make_unique<FileLock::Scope>(lockPath, FileLock::Wait::no);
    if (*lock) return lock;
    if (waits == patience) return nullptr;
    sleep(pause);
  }
}

}  // namespace zelvane
