#include "app/login/login_format.h"

#include "core/paths.h"

namespace zelvane {

LoginFormat systemLoginFormat() {
  return {Paths::home() + "/Library/LaunchAgents/com.tarnwick.zelvane.plist", launchAgentText,
          launchAgentTarget};
}

}  // namespace zelvane
