// The subcommands about one row: "zelvane jump", "next", "ack", "pin".
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "app/model/records/session.h"
#include "cli/exit_code.h"

namespace zelvane::cli {

/// Runs the action on the row that the user means, or says that there is none. The row comes
/// without its notes.
ExitCode onRow(const std::string& wanted,
               const std::function<ExitCode(const ZelvaneSession&)>& action);

/// Brings the row's tab to the front, or says why it cannot be done.
ExitCode jump(const std::string& row);
/// Jumps to the session that has waited longest, else to the one that has been done longest.
ExitCode jumpToNext();
/// Notes that the user has looked at the row.
ExitCode acknowledge(const std::string& row);
/// Pins the row, or unpins it.
ExitCode togglePin(const std::string& row);

/// Which row asks for the user most; nothing when none does. Pure.
std::optional<ZelvaneSession> nextRow(const std::vector<ZelvaneSession>& rows);

}  // namespace zelvane::cli
