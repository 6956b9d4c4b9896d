// Moves files in one step, so that no name is without one and nobody's file is lost. Stateless; any
// thread.
#pragma once

#include <string>
#include <system_error>

namespace zelvane::platform {

/// Each of the names stands for the other's file afterwards; otherwise the system's error, and
/// nothing has changed. `std::errc::not_supported` where the system or the disk knows no such
/// thing.
[[nodiscard]] std::error_code exchangeFiles(const std::string& a, const std::string& b);

/// Renames the file, but never over another one (`std::errc::file_exists`). After any error nothing
/// has changed; `std::errc::not_supported` as above.
[[nodiscard]] std::error_code moveToFreeName(const std::string& file, const std::string& name);

}  // namespace zelvane::platform
