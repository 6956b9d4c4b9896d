#include "app/login/login_format.h"

#include "core/paths.h"

namespace zelvane {

LoginFormat systemLoginFormat() {
  const auto configuration = ZelvanePaths::env("XDG_CONFIG_HOME");
  // The XDG rules ignore a relative path.
  const bool usable = configuration && configuration->front() == '/';
  return {(usable ? *configuration : Paths::home() + "/.config") +
              "/autostart/com.tarnwick.zelvane.desktop",
          autostartText, autostartTarget};
}

}  // namespace zelvane
