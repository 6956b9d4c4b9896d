// Advisory locks between processes, on lock files whose content means nothing. Any thread.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace zelvane::FileLock {

/// Whether `acquire` waits for a lock that somebody else holds, or gives up at once.
enum class Wait { no, yes };

/// Takes an exclusive lock on the file, creating it when missing (mode 0644). Returns the
/// descriptor that holds the lock and belongs to the caller until `release`; nothing on failure.
std::optional<std::int32_t> acquire(const std::string& path, Wait wait);

/// Unlocks and closes the descriptor.
void release(std::int32_t fd);

/// Holds a lock for the length of a scope.
class Scope {
 public:
  Scope(const std::string& path, Wait wait) : fd_(acquire(path, wait)) {}
  ~Scope() {
    if (fd_) release(*fd_);
  }
  Scope(const Scope&) = delete;
  Scope& operator=(const Scope&) = delete;
  explicit operator bool() const { return fd_.has_value(); }

 private:
  std::optional<std::int32_t> fd_;
};

}  // namespace zelvane::FileLock
