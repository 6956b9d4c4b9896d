#include "platform/quarantine.h"

namespace zelvane::platform {

void clearQuarantine(const std::string&) {}

}  // namespace zelvane::platform
