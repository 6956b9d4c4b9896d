// The kernel's argument area of a process. Stateless; any thread.
#pragma once

#include <cstdint>
#include <string>

namespace zelvane::platform {

/// The bytes that `parseArgumentArea` takes; empty for a process of another user and on any
/// failure.
std::string argumentArea(std::int32_t pid);

}  // namespace zelvane::platform
