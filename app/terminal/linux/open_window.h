// New windows of terminal programs that are simply started. Stateless; any thread.
#pragma once

#include <string>

#include "app/terminal/terminal_host.h"

namespace zelvane {

/// Opens a window (a tab, where starting the program does that) of the terminal program with this
/// command's or process's name; false when it is not known or not installed.
bool openWindowOf(const std::string& program, const OpenRequest& request);

/// Whether that could be tried now.
bool canOpenWindowOf(const std::string& program);

/// The words after the program's name that run the request; empty when the program is not known.
std::vector<std::string> windowWords(const std::string& program, const OpenRequest& request);

/// Opens a window of the user's terminal program, whichever that is.
bool openAnyWindow(const OpenRequest& request);

}  // namespace zelvane
