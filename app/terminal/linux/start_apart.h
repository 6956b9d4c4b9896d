// Starting programs that outlive this process. Stateless; any thread.
#pragma once

#include <string>
#include <vector>

#include "app/terminal/place.h"

namespace zelvane {

/// Starts a program that outlives this process and has its own session; false when the program or
/// the folder is not there. It inherits the environment but what tells of the terminal and of the
/// errand of this process; `environment` holds "NAME=value" entries to add.
bool startApart(const std::string& name, const std::vector<std::string>& arguments,
                const std::string& folder, std::vector<std::string> environment = {});

/// What a POSIX shell is told so that a terminal it starts does not inherit what tells of another:
/// empty, or a command with its ";". What is `added` on purpose ("NAME=value") stays. Pure.
std::string forgettingWords(const Environment& inherited, const std::vector<std::string>& added);

}  // namespace zelvane
