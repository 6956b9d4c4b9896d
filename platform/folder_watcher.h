// Tells when something changes in a few folders.
// Owns one thread, which sleeps until the system reports a change; the callback runs on it.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace zelvane::platform {

/// Watches folders for entries that are added, renamed or removed, and for files in them whose
/// content changes in place. A folder that does not exist yet, or goes away, is picked up when it
/// (re)appears. What no event tells (a parent renamed, a link pointed elsewhere, events lost) is
/// noticed by `recheck`. Sub-folders are not watched.
class FolderWatcher {
 public:
  /// Starts watching. `changed` is called for every batch of events, until destruction begins.
  FolderWatcher(std::vector<std::string> folders, std::function<void()> changed);
  /// Stops watching; no call is under way when it returns. Not to be called from `changed`.
  ~FolderWatcher();
  /// Looks whether the watches still lie on the folders behind the paths, and mends them; any
  /// thread.
  void recheck();
  FolderWatcher(const FolderWatcher&) = delete;
  FolderWatcher& operator=(const FolderWatcher&) = delete;

 private:
  class Worker;
  std::unique_ptr<Worker> worker_;
};

}  // namespace zelvane::platform
