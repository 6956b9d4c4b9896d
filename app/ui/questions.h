// Questions to the user that must be answered before anything happens. Main thread; each waits for
// the answer while the column goes on.
#pragma once

namespace zelvane {

/// Whether the user, asked in front of everything else, wants to disconnect Claude Code.
bool confirmDisconnect();

}  // namespace zelvane
