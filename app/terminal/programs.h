// The programs that terminals are asked and opened through. Stateless; any thread.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "core/time.h"

#include "app/terminal/terminal_host.h"

namespace zelvane {

/// The program's path by the variable PATH, or in the folders where users install programs; nothing
/// when it is not there.
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

/// Words for a POSIX shell that run the command in the folder.
std::string shellCommand(const std::string& folder, const std::vector<std::string>& argv);

/// Whether these words can be typed into a shell that nobody knows: as ones it can quote, and
/// nothing that acts on a terminal. Pure.
bool canBeTyped(const OpenRequest& request);

}  // namespace zelvane
