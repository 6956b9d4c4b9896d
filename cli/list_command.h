// "zelvane list": the rows of the moment.
#pragma once

#include "cli/exit_code.h"
#include "cli/listing.h"

namespace zelvane::cli {

/// Makes one pass, which writes nothing, and prints its rows.
ExitCode list(Format format);

}  // namespace zelvane::cli
