// The offers to reopen conversations, and the run of the command that does it. Main thread; the
// command runs on a queue of its own and is ended with the offers.
#pragma once

#include <atomic>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "core/json_file.h"
#include "core/serial_queue.h"
#include "core/time.h"

#include "app/model/records/session.h"
#include "app/model/snapshots/snapshot_files.h"

namespace zelvane {

/// Runs the restore command on a snapshot file until it ends or is cancelled; its output.
using RestoreCommand = std::function<std::string(const std::string& snapshot, bool exact,
                                                 const std::atomic<bool>& cancelled)>;

class RestoreOffers : public std::enable_shared_from_this<RestoreOffers> {
 public:
  enum class Change { pendingRestore, recentClosed, restoring, restoreMessage };

  struct Options {
    RestoreCommand command;  ///< empty when there is none: then nothing is ever reopened
    std::shared_ptr<SnapshotFiles> files;
    Executor mainThread;
    Clock clock;
    std::function<void(Change)> changed;
    std::function<void()> refresh;  ///< asks for a pass
  };

  explicit RestoreOffers(Options options) : options_(std::move(options)) {}
  /// Ends a command that still runs.
  ~RestoreOffers();
  RestoreOffers(const RestoreOffers&) = delete;
  RestoreOffers& operator=(const RestoreOffers&) = delete;

  const std::vector<Json>& pendingRestore() const { return pendingRestore_; }
  const std::vector<Json>& recentClosed() const { return recentClosed_; }
  bool restoring() const { return restoring_; }
  const std::string& restoreMessage() const { return restoreMessage_; }

  /// Takes over what a pass found.
  void follow(std::vector<Json> pending, const std::optional<std::vector<Json>>& burst,
              const std::vector<ZelvaneSession>& rows);

  /// Reopens what was open before the reboot.
  void restoreReboot();
  /// Reopens what was closed all at once.
  void restoreRecent();
  /// The user does not want it: the offer does not come back.
  void dismissRestore();
  void dismissRecent();

 private:
  void run(const std::string& snapshot, bool exact);
  void ended(const std::string& output, bool exact);
  void setPending(std::vector<Json> items);
  void setRecent(std::vector<Json> items);
  void setRestoring(bool restoring);
  void setMessage(std::string message);

  Options options_;
  std::vector<Json> pendingRestore_;
  std::vector<Json> recentClosed_;
  bool restoring_ = false;
  std::string restoreMessage_;
  Time dismissedAt_ = distantPast;
  std::atomic<bool> cancelled_ = false;
  std::unique_ptr<SerialQueue> q_;  ///< from the first run on
};

/// Runs the program at the path as the restore command.
RestoreCommand restoreCommand(const std::string& program);

}  // namespace zelvane
