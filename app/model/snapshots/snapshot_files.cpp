#include "app/model/snapshots/snapshot_files.h"

#include <unistd.h>

#include "app/model/snapshots/snapshot.h"

namespace zelvane {

std::optional<Json> SnapshotFiles::snapshot() const { return readJSON(snapshotPath()); }

void SnapshotFiles::writeSnapshot(const std::string& text) {
  const std::lock_guard lock(lock_);
  if (!frozen_) (void)replaceFile(snapshotPath(), text);
}

void SnapshotFiles::setFrozen(bool frozen) {
  const std::lock_guard lock(lock_);
  frozen_ = frozen;
}

void SnapshotFiles::markQuit(Time now) {
  const std::lock_guard lock(lock_);
  if (frozen_) return;
  frozen_ = true;
  if (const auto marked = quitMarked(snapshot(), now)) {
    (void)JSONFile::writeAtomic(*marked, snapshotPath());
  }
}

std::optional<Json> SnapshotFiles::rebootSnapshot() const { return readJSON(rebootSnapshotPath()); }

bool SnapshotFiles::hasRebootSnapshot() const {
  return access(rebootSnapshotPath().c_str(), F_OK) == 0;
}

void SnapshotFiles::writeRebootSnapshot(const Json& snapshot) const {
  (void)JSONFile::writeAtomic(snapshot, rebootSnapshotPath());
}

void SnapshotFiles::removeRebootSnapshot() const { unlink(rebootSnapshotPath().c_str()); }

void SnapshotFiles::writeRecentlyClosed(const std::vector<Json>& items, Time now) const {
  (void)JSONFile::writeAtomic({{"saved_at", secondsSince1970(now)}, {"items", items}},
                              recentlyClosedPath());
}

}  // namespace zelvane
