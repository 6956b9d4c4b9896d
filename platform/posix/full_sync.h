// The request that brings a file's bytes to the disk itself. It differs by system.
#pragma once

namespace zelvane::platform {

/// As fsync(2), the drive's own memory included.
int fullSync(int fd);

}  // namespace zelvane::platform
