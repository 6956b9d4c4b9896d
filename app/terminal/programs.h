// The programs that terminals are asked and opened through. Stateless; any thread.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "core/time.h"

#include "app/terminal/place.h"

namespace zelvane {

/// The program's path by the variable PATH; nothing when it is not there.
std::optional<std::string> programPath(const std::string& name);

/// What a program said on standard output; nothing when it is not there, does not end within the
/// time, or says by its exit status that it failed.
std::optional<std::string> askProgram(const std::string& name,
                                      const std::vector<std::string>& arguments, Seconds timeout,
                                      std::vector<std::string> environment = {});

/// Has a program pass a wish on. Also true when it did not end in time: the wish may still be on
/// its way, and must not be made of another. `environment` as with `askProgram`.
bool tellProgram(const std::string& name, const std::vector<std::string>& arguments,
                 Seconds timeout, std::vector<std::string> environment = {});

/// Starts a program that outlives this process and has its own session; false when the program or
/// the folder is not there. It inherits the environment but what tells of the terminal and of the
/// errand of this process; `environment` holds "NAME=value" entries to add.
bool startApart(const std::string& name, const std::vector<std::string>& arguments,
                const std::string& folder, std::vector<std::string> environment = {});

/// What a POSIX shell is told so that a terminal it starts does not inherit what tells of another:
/// empty, or a command with its ";". What is `added` on purpose ("NAME=value") stays. Pure.
std::string forgettingWords(const Environment& inherited, const std::vector<std::string>& added);

/// Words for a POSIX shell that run the command in the folder.
std::string shellCommand(const std::string& folder, const std::vector<std::string>& argv);

}  // namespace zelvane
