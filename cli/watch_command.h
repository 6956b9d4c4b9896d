// "zelvane watch": the rows, kept up to date.
#pragma once

#include "cli/exit_code.h"
#include "cli/listing.h"

namespace zelvane::cli {

/// Shows the rows until a signal ends it or the reader goes. On a terminal, text is drawn in place;
/// elsewhere, and as JSON, each change is written below the last.
ExitCode watch(Format format);

}  // namespace zelvane::cli
