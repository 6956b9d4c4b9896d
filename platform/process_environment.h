// What else the kernel tells of a process that belongs to this user. Stateless; any thread.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace zelvane::platform {

/// The environment that the process was started with, as "NAME=value" entries each ended by a zero
/// byte; empty when it cannot be read. What goes beyond 4 MiB is not read.
std::string processEnvironment(std::int32_t pid);

/// Paths of the local stream sockets that the process listens on, in no promised order; empty when
/// that cannot be read. Nameless and abstract ones are left out.
std::vector<std::string> listeningSockets(std::int32_t pid);

}  // namespace zelvane::platform
