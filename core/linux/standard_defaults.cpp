#include "core/standard_defaults.h"

#include "core/paths.h"

namespace zelvane {

std::shared_ptr<UserDefaults> standardDefaults() {
  const auto configuration = ZelvanePaths::env("XDG_CONFIG_HOME");
  // The XDG rules ignore a relative path.
  const bool usable = configuration && configuration->front() == '/';
  return std::make_shared<FileDefaults>((usable ? *configuration : Paths::home() + "/.config") +
                                        "/zelvane/settings.json");
}

}  // namespace zelvane
