#include "platform/file_times.h"

namespace zelvane::platform {
namespace {

std::int64_t nanoseconds(const timespec& time) {
  return std::int64_t{time.tv_sec} * 1'000'000'000 + time.tv_nsec;
}

}  // namespace

FileTimes fileTimes(const struct stat& status) {
  return {nanoseconds(status.st_mtimespec), nanoseconds(status.st_ctimespec)};
}

}  // namespace zelvane::platform
