#include "platform/quarantine.h"

#include <sys/xattr.h>

namespace zelvane::platform {

void clearQuarantine(const std::string& path) {
  removexattr(path.c_str(), "com.apple.quarantine", XATTR_NOFOLLOW);
}

}  // namespace zelvane::platform
