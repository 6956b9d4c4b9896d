#include "platform/posix/full_sync.h"

#include <unistd.h>

namespace zelvane::platform {

int fullSync(int fd) { return fsync(fd); }

}  // namespace zelvane::platform
