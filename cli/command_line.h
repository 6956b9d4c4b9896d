// The command line of zelvane: which subcommand with which options. Main thread.
#pragma once

#include <functional>
#include <string>

#include "cli/exit_code.h"

namespace zelvane::cli {

/// What the arguments ask for: a subcommand to run, or texts to print and the code to end with.
struct CommandLine {
  std::function<ExitCode()> subcommand;  ///< empty when there is nothing to run
  std::string output;                    ///< for standard output
  std::string problem;                   ///< for standard error
  ExitCode code = fine;
};

/// Reads the arguments; runs nothing.
CommandLine commandLine(int argc, const char* const* argv);

/// Does what they ask for and returns the code to end with.
ExitCode run(const CommandLine& commandLine);

}  // namespace zelvane::cli
