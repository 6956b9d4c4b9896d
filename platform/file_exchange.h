// Swaps two files in one step, so that neither name is ever without one. Stateless; any thread.
#pragma once

#include <string>
#include <system_error>

namespace zelvane::platform {

/// Each of the names stands for the other's file afterwards; otherwise the system's error, and
/// nothing has changed. `std::errc::not_supported` where the system or the disk knows no such
/// thing.
[[nodiscard]] std::error_code exchangeFiles(const std::string& a, const std::string& b);

}  // namespace zelvane::platform
