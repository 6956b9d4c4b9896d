// What Claude Code itself says about one running process, in its session file.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "core/json_file.h"
#include "core/time.h"

namespace zelvane {

struct ClaudeProc {
  std::int32_t pid = 0;
  std::string sessionId;
  std::string cwd;
  std::string status = "idle";  ///< "waiting", "busy" and "shell" mean something, else idle
  std::optional<Time> updatedAt;

  bool operator==(const ClaudeProc&) const = default;
};

/// The record behind a session file's object. Nothing unless it describes an interactive session
/// started from the command line, with a usable pid and session id.
std::optional<ClaudeProc> claudeProc(const Json& file);

}  // namespace zelvane
