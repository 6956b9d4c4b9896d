// Names for threads, so that debuggers and `top -H` tell them apart.
#pragma once

#include <string>

namespace zelvane::platform {

/// Names the calling thread; what exceeds the system's limit (15 bytes on Linux) is cut.
void nameThisThread(const std::string& name);

}  // namespace zelvane::platform
