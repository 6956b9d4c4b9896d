#include "platform/session_bus.h"

namespace zelvane::platform {

bool sessionBusIsSilent(std::chrono::duration<double>) { return false; }

}  // namespace zelvane::platform
