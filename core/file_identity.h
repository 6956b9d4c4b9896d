// Tells one state of a file from another without reading it. No state; any thread.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace zelvane {

struct FileIdentity {
  std::uint64_t device = 0;
  std::uint64_t file = 0;
  std::uint64_t size = 0;
  std::int64_t modified = 0;  ///< nanoseconds since 1970
  std::int64_t changed = 0;   ///< the same, for the file's attributes
  std::uint32_t mode = 0;     ///< permissions

  bool operator==(const FileIdentity&) const = default;
};

/// Of what the path leads to; nothing when it leads nowhere.
std::optional<FileIdentity> fileIdentity(const std::string& path);

}  // namespace zelvane
