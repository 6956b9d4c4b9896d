#include "platform/file_times.h"

namespace zelvane::platform {
namespace {

std::int64_t nanoseconds(const timespec& time) {
  return std::int64_t{time.tv_sec} * 1'000'000'000 + time.tv_nsec;
}

/// One and the same field, under the name that the system gives it.
template <typename Status>
FileTimes timesIn(const Status& status) {
  if constexpr (requires { status.st_mtimespec; }) {
    return {nanoseconds(status.st_mtimespec), nanoseconds(status.st_ctimespec)};
  } else {
    return {nanoseconds(status.st_mtim), nanoseconds(status.st_ctim)};
  }
}

}  // namespace

FileTimes fileTimes(const struct stat& status) { return timesIn(status); }

}  // namespace zelvane::platform
