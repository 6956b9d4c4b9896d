// Reopens conversations, one tab after the other. The outside world is handed in.
#pragma once

#include <functional>
#include <set>
#include <string>

#include "core/time.h"

#include "app/restore/restore_plan.h"
#include "app/terminal/terminal.h"

namespace zelvane {

struct RestoreDoors {
  std::function<std::set<std::string>()> running;   ///< ids of the sessions that run now
  std::function<std::set<std::string>()> starting;  ///< of those whose tab is about to run them
  std::function<TerminalResult(const RestoreItem&)> open;
  std::function<void(const std::string& sid)> remember;  ///< that it was opened
  std::function<void(const std::string& line)> say;      ///< to the user
  std::function<void(Seconds)> pause;
  Clock clock;
};

/// A title or folder as it is printed: without control characters, and without the words that mean
/// something to whoever reads the output.
std::string restoreName(const std::string& text);

/// Opens what the plan names, says how each went, and at the end the sum; how many failed.
int runRestore(const RestorePlan& plan, const RestoreDoors& doors);

}  // namespace zelvane
