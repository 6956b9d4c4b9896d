// The restore command in the simulated world: the real plan and the real run, on terminals that are
// none.
#pragma once

#include <atomic>
#include <map>
#include <set>
#include <string>

#include "app/restore/restore_files.h"
#include "app/restore/restore_plan.h"
#include "app/terminal/terminal.h"
#include "tests/simulator/world.h"

namespace zelvane::test {

class Restorer {
 public:
  explicit Restorer(World& world) : world_(world) {}

  /// Reopens what the snapshot file names; what the command prints.
  std::string run(const std::string& snapshot, bool exact, const std::atomic<bool>& cancelled);
  /// The run that is under way ends at its next pause, half done.
  void interrupt() { interrupted_ = true; }
  /// The tabs that were about to run something are gone.
  void reboot() { starting_.clear(); }
  bool isRunning() const { return running_; }
  std::uint64_t opened() const { return opened_; }

 private:
  std::set<std::string> runningSessions() const;
  TerminalResult open(const RestoreItem& item);
  void noted(const OpenedRecord& record, const std::string& sid);
  void pause(Seconds seconds, const std::atomic<bool>& cancelled);

  World& world_;
  bool running_ = false;
  bool interrupted_ = false;
  std::set<std::string> starting_;         ///< sessions whose tab has yet to run them
  std::map<std::string, double> offered_;  ///< when those of this run were closed, or saved
  std::set<std::pair<std::string, double>> remembered_;  ///< of all runs, once they were opened
  std::uint64_t opened_ = 0;
};

}  // namespace zelvane::test
