// Standard output and error of the command, and what is known of where they lead. Any thread,
// unless it says otherwise.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "cli/exit_code.h"
#include "cli/listing_text.h"

namespace zelvane::cli {

struct TerminalSize {
  int columns = 80;
  int rows = 24;
};

/// The size of the terminal that standard output is; nothing when it is none.
std::optional<TerminalSize> terminalSize();

/// Whether the terminal of standard output understands more than plain lines.
bool terminalIsCapable();

/// How a listing may look on standard output; NO_COLOR is obeyed.
Look outputLook();

enum class Written {
  all,
  closed,  ///< the reader has gone
  failed,
};

/// Writes to standard output, whole and unbuffered.
[[nodiscard]] Written writeOut(std::string_view text);

/// The code to end with after that. Tells on standard error when writing failed; a reader that has
/// gone had enough.
ExitCode exitCode(Written written);

/// Writes a sentence with outside text in it as a line to standard error, if there is one.
void tell(const std::optional<std::string>& sentence);

/// Writes to standard error; a failure is silent.
void writeError(std::string_view text);

/// Calls back, from a thread of its own, when the reader of standard output goes; never when it
/// leads to a terminal or file. Called once.
void whenOutputCloses(std::function<void()> closed);

}  // namespace zelvane::cli
