// The snapshot files in the data folder. Any thread. What cannot be read counts as empty, what
// cannot be written is left: the next pass writes again.
#pragma once

#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "core/json_file.h"
#include "core/time.h"

namespace zelvane {

class SnapshotFiles {
 public:
  explicit SnapshotFiles(std::string folder) : folder_(std::move(folder)) {}

  std::string rebootSnapshotPath() const { return folder_ + "/rebootsnap.json"; }
  std::string recentlyClosedPath() const { return folder_ + "/recentclosed.json"; }

  /// The rolling snapshot of the open conversations.
  std::optional<Json> snapshot() const;
  /// Does nothing while frozen.
  void writeSnapshot(const std::string& text);
  /// While frozen the snapshot stays as it is: the machine goes down, and closes what is open.
  void setFrozen(bool frozen);
  /// Marks the snapshot as left by a quit on purpose, and freezes it; not when frozen before.
  void markQuit(Time now);

  std::optional<Json> rebootSnapshot() const;
  bool hasRebootSnapshot() const;
  void writeRebootSnapshot(const Json& snapshot) const;
  void removeRebootSnapshot() const;

  void writeRecentlyClosed(const std::vector<Json>& items, Time now) const;

 private:
  std::string snapshotPath() const { return folder_ + "/autosnap.json"; }

  std::string folder_;
  std::mutex lock_;
  bool frozen_ = false;
};

}  // namespace zelvane
