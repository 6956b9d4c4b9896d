// Background agents and shells of a session, from what the client says about them. Pure.
#pragma once

#include <string_view>

#include "core/json_file.h"
#include "core/time.h"

namespace zelvane {

/// Takes the client's own list at the end of a turn ("background_tasks") in place of what was
/// known. A payload without the list changes nothing.
void takeBackground(Json& record, const Json& payload, Time now);

/// Takes a successful tool call that started or stopped background work.
void followBackground(Json& record, const Json& payload, Time now);

/// Whether a prompt is the client's own notice about background work, typed by nobody.
bool isTaskNotification(std::string_view prompt);

/// Takes such a notice: work that has ended is not counted any more.
void takeTaskNotification(Json& record, std::string_view prompt);

/// Forgets all of it: the process that ran it is gone. Shells survive "/clear", but under the id of
/// a new session, which names none before its first turn has ended; until then none are counted.
void forgetBackground(Json& record);

}  // namespace zelvane
