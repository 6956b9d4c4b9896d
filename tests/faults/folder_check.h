// Looks for losses in what a fault has left.
#pragma once

#include <string>
#include <vector>

#include "tests/faults/scenarios.h"

namespace zelvane::test {

/// Which notes may be read after a fault.
enum class Expect {
  oldOrNow,
  now,  ///< the user was told nothing of a problem
};

/// What may be in the backup after a fault.
enum class Backup {
  oldOrNext,
  old,  ///< the fault came before the backup was touched
};

/// Opens the notes below the disk's folder as after a restart, and saves once more. Returns a
/// sentence for each thing that is lost.
std::vector<std::string> lossesIn(const std::string& disk, const Scenario& scenario, Expect expect,
                                  Backup backup = Backup::oldOrNext);

/// What is wrong with a log that had these bytes before: each line that was whole is there as it
/// was, and of all others only the last, or one that was written again whole, may be cut.
std::vector<std::string> lossesInLog(const std::string& before, const std::string& log);

}  // namespace zelvane::test
