// The door to transcripts on disk. Implementations keep no state; any thread.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace zelvane {

class TranscriptFiles {
 public:
  virtual ~TranscriptFiles() = default;
  /// Names of a folder's entries, in the system's order; none when it cannot be read.
  virtual std::vector<std::string> entries(const std::string& folder) const = 0;
  /// Bytes of a regular file, from its attributes; nothing when it is missing or anything else.
  virtual std::optional<std::uint64_t> size(const std::string& path) const = 0;
  /// Reads up to `most` bytes from the offset and returns how many there were; nothing when the
  /// file cannot be opened or read, or is not regular. Follows links; never waits.
  virtual std::optional<std::size_t> read(const std::string& path, std::uint64_t offset, char* into,
                                          std::size_t most) const = 0;
};

/// The system's files.
std::shared_ptr<const TranscriptFiles> systemTranscriptFiles();

}  // namespace zelvane
