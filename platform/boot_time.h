// When the machine was started.
#pragma once

#include <cstdint>

namespace zelvane::platform {

/// Boot time in whole seconds since 1970, from the kernel; 0 when the kernel does not tell.
std::int64_t bootTime();

}  // namespace zelvane::platform
