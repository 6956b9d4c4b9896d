// Notices that several conversations were closed within a few seconds, as by closing a window full
// of tabs. Pure.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "core/json_file.h"
#include "core/time.h"

#include "app/model/records/session.h"

namespace zelvane {

/// What is remembered between two looks at the rows. Items: "sid", "cwd", "title", "pid".
struct BurstMemory {
  std::map<std::string, Json> live;             ///< the last rows, by session id
  std::vector<std::pair<Time, Json>> vanished;  ///< when each was missed first
  Time reported = distantPast;                  ///< when a burst began that was reported
};

/// The items that were closed all at once, each with "closed_at"; nothing while there is nothing to
/// report. `alive` tells whether a process lives whose row is missing.
std::optional<std::vector<Json>> detectBurst(const std::vector<ZelvaneSession>& rows,
                                             BurstMemory& memory,
                                             const std::function<bool(std::int32_t pid)>& alive,
                                             Time now);

}  // namespace zelvane
