// The bus on which the programs of a session talk to each other.
#pragma once

#include <chrono>

namespace zelvane::platform {

/// Whether somebody has the bus's place and does not say a word within `patience`. False at once
/// where the bus answers, where nobody listens, and on systems without one.
bool sessionBusIsSilent(std::chrono::duration<double> patience);

}  // namespace zelvane::platform
