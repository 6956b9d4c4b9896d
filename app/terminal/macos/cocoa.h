// What only the system's application kit tells and does. Loaded when first needed, not linked: the
// command is also the hook helper, which must start at once. Any thread.
#pragma once

#include <optional>
#include <string>

namespace zelvane {

/// Bundle identifier of the application in front; empty when there is none or it has none. Nothing
/// where the kit cannot know: it hears of changes on the main thread's event loop alone, and in a
/// program without one would give its first answer for ever.
std::optional<std::string> frontApplication();

/// Runs the AppleScript to its end, in this process; false when it failed or could not be read. The
/// system asks the user once whether we may control the program that the script is about. The kit
/// runs one script at a time, not always on the main thread: callers wait for each other.
bool runAppleScript(const std::string& source);

}  // namespace zelvane
