// Advisory locks between processes, on lock files whose content means nothing. Any thread.
#pragma once

#include <cerrno>
#include <cstdint>
#include <optional>
#include <string>
#include <system_error>

#include "core/time.h"

namespace zelvane::FileLock {

/// Whether `acquire` waits for a lock that somebody else holds, or gives up at once.
enum class Wait { no, yes };

/// Takes an exclusive lock on the file, creating it when missing (mode 0644). Returns the
/// descriptor that holds the lock and belongs to the caller until `release`; nothing on failure,
/// with errno EWOULDBLOCK when somebody else holds it. Nothing but a regular file is locked.
std::optional<std::int32_t> acquire(const std::string& path, Wait wait);

/// Takes the lock as soon as it is free, within the patience. Nothing when it was not, with errno
/// EWOULDBLOCK; or at once when there can be no lock file, with another one.
std::optional<std::int32_t> acquireWithin(const std::string& path, Seconds patience);

/// Unlocks and closes the descriptor.
void release(std::int32_t fd);

/// Holds a lock for the length of a scope.
class Scope {
 public:
  Scope(const std::string& path, Wait wait) : fd_(acquire(path, wait)), errno_(errno) {}
  Scope(const std::string& path, Seconds patience)
      : fd_(acquireWithin(path, patience)), errno_(errno) {}
  ~Scope() {
    if (fd_) release(*fd_);
  }
  Scope(const Scope&) = delete;
  Scope& operator=(const Scope&) = delete;
  explicit operator bool() const { return fd_.has_value(); }
  /// Why there is no lock; no error when there is one.
  std::error_code error() const {
    return fd_ ? std::error_code() : std::error_code(errno_, std::generic_category());
  }

 private:
  std::optional<std::int32_t> fd_;
  int errno_;
};

}  // namespace zelvane::FileLock
