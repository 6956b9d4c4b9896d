// Reads Claude Code's session files and the hook records. Touches nothing else in their folders.
// No state; any thread.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "core/time.h"

#include "app/model/records/claude_proc.h"
#include "app/model/records/hook_record.h"

namespace zelvane {

/// Lets some time pass. Handed in, so that tests need not wait.
using Pause = std::function<void(Seconds)>;

/// Every usable session file of the folder, by name. Only regular files whose name ends in ".json"
/// are opened. The client rewrites its files in place, so one that cannot be read and changed
/// within the last two seconds is looked at again a few times, for a tenth of a second in all.
std::vector<ClaudeProc> readSessionFiles(const std::string& folder, Time now, const Pause& pause);

/// The hook record of a session; nothing when its file is missing or damaged, or when the id could
/// lead out of the folder.
std::optional<HookRecord> readHookRecord(const std::string& folder, const std::string& sessionId);

}  // namespace zelvane
