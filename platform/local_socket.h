// One question to a program that listens on a local socket. Stateless; any thread.
#pragma once

#include <chrono>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace zelvane::platform {

/// Connects to the stream socket at the path ("@name": a name without file, where the system has
/// such), sends the request and returns what comes back once `isWhole` holds for it. Nothing when
/// nobody listens, the time-out passes, the other side hangs up first, or it sends over 16 MiB.
std::optional<std::string> askLocalSocket(const std::string& address, std::string_view request,
                                          std::chrono::duration<double> timeout,
                                          const std::function<bool(std::string_view)>& isWhole);

}  // namespace zelvane::platform
