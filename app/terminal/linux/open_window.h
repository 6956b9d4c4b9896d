// New windows of terminal programs that are simply started. Stateless; any thread.
#pragma once

#include <string>

#include "app/terminal/terminal_host.h"

namespace zelvane {

/// Opens a window (a tab, where starting the program does that) of the terminal program with this
/// command name; false when it is not known or not installed.
bool openWindowOf(const std::string& program, const OpenRequest& request);

/// Opens a window of the user's terminal program, whichever that is.
bool openAnyWindow(const OpenRequest& request);

}  // namespace zelvane
