// What the hook helper recorded about one Claude Code session.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "core/json_file.h"
#include "core/time.h"

namespace zelvane {

struct HookRecord {
  struct Todos {
    std::int64_t done = 0;
    std::int64_t total = 0;
    std::string current;  ///< the item in progress, empty when none
    bool operator==(const Todos&) const = default;
  };

  std::optional<std::string> transcriptPath;
  std::int64_t bgAgents = 0;
  std::string bgAgentDesc;
  std::int64_t bgShells = 0;
  std::vector<double> bgShellFirstSeen;  ///< seconds since 1970, in no particular order
  std::string bgShellDesc;
  std::string state;   ///< "waiting" and "done" mean something
  std::string prompt;  ///< the user's last one, raw
  std::string reason;  ///< why Claude waits
  std::optional<Todos> todos;
  std::optional<Time> workingSince;
  std::optional<Time> doneAt;
  std::optional<Time> updatedAt;
  /// How the session began; "clear" when it replaced another in the same process.
  std::optional<std::string> source;

  bool operator==(const HookRecord&) const = default;
};

/// The record behind a hook record file's object; a key of another type takes its default.
HookRecord hookRecord(const Json& file);

}  // namespace zelvane
