#include "core/file_identity.h"

#include <sys/stat.h>

#include "platform/file_times.h"

namespace zelvane {

std::optional<FileIdentity> fileIdentity(const std::string& path) {
  struct stat info {};
  if (stat(path.c_str(), &info) != 0) return std::nullopt;
  const auto times = platform::fileTimes(info);
  return FileIdentity{.device = static_cast<std::uint64_t>(info.st_dev),
                      .file = static_cast<std::uint64_t>(info.st_ino),
                      .size = static_cast<std::uint64_t>(info.st_size),
                      .modified = times.modified,
                      .changed = times.changed,
                      .mode = static_cast<std::uint32_t>(info.st_mode) & 07777};
}

}  // namespace zelvane
