// What is kept or dropped on the main thread when a pass publishes its rows. Pure.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "core/json_file.h"
#include "core/time.h"

#include "app/model/records/session.h"

namespace zelvane {

/// The offer to reopen recently closed conversations after a pass: a burst's items join unless
/// already there or the offer was `dismissed`; items that run again, or are ten minutes old, leave.
/// Items are JSON objects with "sid" and "closed_at" (seconds since 1970).
std::vector<Json> recentClosedAfter(std::vector<Json> recentClosed,
                                    const std::optional<std::vector<Json>>& burst, bool dismissed,
                                    const std::vector<ZelvaneSession>& rows, Time now);

/// The editing key after a pass: nothing once the session that it names has no row.
std::optional<std::string> editingAfter(const std::optional<std::string>& editing,
                                        const std::vector<ZelvaneSession>& rows);

/// Whether the one-second clock must tick: somebody sees a row that is working.
bool clockNeeded(bool visible, const std::vector<ZelvaneSession>& rows);

}  // namespace zelvane
