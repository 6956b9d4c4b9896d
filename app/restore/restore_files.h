// The files of the restore command: the snapshot to reopen, and what it has opened already.
#pragma once

#include <map>
#include <optional>
#include <string>

#include "core/json_file.h"
#include "core/time.h"

namespace zelvane {

/// The snapshot to reopen: the one named by the environment; else the newer of the one that was
/// named last and the one from before the last reboot. Nothing when there is none that can be read.
std::optional<Json> snapshotToRestore();

/// Keeps the snapshot that the environment names for later runs without it.
void keepNamedSnapshot();

/// What has been opened, in a file of its own that each call reads or replaces.
class OpenedRecord {
 public:
  explicit OpenedRecord(std::string path) : path_(std::move(path)) {}

  /// By session id, in seconds since 1970.
  std::map<std::string, double> openedAt() const;
  /// Also drops what is older than a month.
  void add(const std::string& sid, Time now) const;

 private:
  std::string path_;
};

}  // namespace zelvane
