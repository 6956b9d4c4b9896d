// The times of a file to the nanosecond, which systems name differently. Stateless; any thread.
#pragma once

#include <cstdint>
#include <sys/stat.h>

namespace zelvane::platform {

struct FileTimes {
  std::int64_t modified = 0;  ///< nanoseconds since 1970: its content
  std::int64_t changed = 0;   ///< nanoseconds since 1970: its content, names or attributes
};

FileTimes fileTimes(const struct stat& status);

}  // namespace zelvane::platform
