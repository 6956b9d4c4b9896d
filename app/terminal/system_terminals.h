// The terminals that this system can have. One source per system.
#pragma once

#include <memory>

#include "app/terminal/terminal_set.h"

namespace zelvane {

/// A set with connections of its own, none opened yet.
std::unique_ptr<TerminalSet> systemTerminals();

}  // namespace zelvane
