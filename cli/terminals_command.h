// "zelvane terminals": what works with each terminal that sessions run in.
#pragma once

#include <string>
#include <vector>

#include "app/terminal/terminal.h"
#include "cli/exit_code.h"
#include "cli/listing.h"

namespace zelvane::cli {

/// Asks the terminals and prints what works, and what would unlock the rest.
ExitCode terminals(Format format);

/// What is printed for people. Pure.
std::string supportText(const std::vector<Support>& support);

}  // namespace zelvane::cli
