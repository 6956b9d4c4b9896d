// Runs one external command to its end. Stateless; any thread; blocks the caller.
#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace zelvane::platform {

struct ChildRequest {
  std::string executable;  ///< path of the program; PATH is not searched
  std::vector<std::string> arguments;
  std::optional<std::string> folder;       ///< working folder; the caller's when absent
  std::vector<std::string> environment{};  ///< "NAME=value", each replacing an inherited NAME
  std::chrono::duration<double> timeout;
  /// Looked at now and then: once true, the child is asked to end as after the time-out.
  const std::atomic<bool>* cancelled = nullptr;
};

struct ChildResult {
  std::int32_t status = -1;  ///< exit status; 128 + signal when one ended it; -1: not known
  std::string output;        ///< the bytes it wrote to standard output
};

/// Runs the command with null standard input and error and no other open descriptor. After the
/// time-out the child is asked to end, and killed when it still lives two seconds later; what it
/// wrote until then is returned. Output beyond 64 MiB is read and dropped. Reading ends with the
/// child even when a process that it left behind keeps its output open.
ChildResult runChild(const ChildRequest& request);

}  // namespace zelvane::platform
