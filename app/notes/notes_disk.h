// The few things that the notes do with files: the seam at which a test lets each of them fail.
// Stateless; any thread.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <sys/types.h>
#include <system_error>
#include <vector>

#include "core/file_identity.h"

namespace zelvane {

class NotesDisk {
 public:
  virtual ~NotesDisk() = default;

  /// Whether anything lies at the path: also a link that leads nowhere, a folder, and what we are
  /// not allowed to look at. False only when there is certainly nothing.
  virtual bool exists(const std::string& path) const = 0;
  /// Of what the path leads to; nothing when it leads nowhere.
  virtual std::optional<FileIdentity> identity(const std::string& path) const = 0;
  /// The path with links followed; the path itself when that cannot be told.
  virtual std::string resolved(const std::string& path) const = 0;
  /// The bytes of a regular file; nothing when they cannot all be read, or are too many.
  virtual std::optional<std::string> read(const std::string& path) const = 0;
  /// Names in the folder; empty when it cannot be listed.
  virtual std::vector<std::string> list(const std::string& folder) const = 0;

  /// Makes the folder and those that lead to it, for their user alone.
  virtual std::error_code makeFolders(const std::string& path) = 0;
  /// Makes a file that was not there, with these bytes, which lie on the disk when this returns.
  /// After a failure a part of it may be left.
  virtual std::error_code create(const std::string& path, std::string_view bytes,
                                 std::uint32_t mode) = 0;
  /// Adds the bytes at the file's end, as `create` does, making the file when it is missing. A last
  /// line that has no end gets one first.
  virtual std::error_code appendLines(const std::string& path, std::string_view bytes) = 0;
  virtual std::error_code rename(const std::string& from, const std::string& to) = 0;
  virtual std::error_code remove(const std::string& path) = 0;
  /// Waits until what was made, renamed and removed in the folder lies on the disk.
  virtual std::error_code syncFolder(const std::string& path) = 0;
};

/// The largest file that is read, and so the largest that may be written.
inline constexpr std::size_t largestNotesFile = std::size_t{256} << 20;

/// This machine's disk.
std::shared_ptr<NotesDisk> systemNotesDisk();

}  // namespace zelvane
