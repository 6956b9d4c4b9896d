#include "platform/session_bus.h"

namespace zelvane::platform {

SilentBus::SilentBus(std::chrono::duration<double>) {}

SilentBus::~SilentBus() = default;

}  // namespace zelvane::platform
