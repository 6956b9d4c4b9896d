// A socket for local connections whose writes raise no signal. The flags for that differ by system.
#pragma once

#include <cstddef>
#include <sys/types.h>

namespace zelvane::platform {

/// A local stream socket that never blocks and stays out of children; -1 and errno on failure.
int openLocalStream();

/// As send(2), but a peer that hung up is an error and no signal.
ssize_t sendQuietly(int fd, const void* bytes, std::size_t size);

}  // namespace zelvane::platform
