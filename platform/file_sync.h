// Makes sure that what was written survives a power cut. Stateless; any thread.
#pragma once

#include <string>
#include <system_error>

namespace zelvane::platform {

/// Waits until the file's bytes lie on the disk itself; the system's error when they may not.
/// On a file system that knows no such request there is nothing to wait for, and no error.
[[nodiscard]] std::error_code syncFile(int fd);

/// The same for the entries of a folder: files created, renamed and removed in it.
[[nodiscard]] std::error_code syncFolder(const std::string& path);

}  // namespace zelvane::platform
