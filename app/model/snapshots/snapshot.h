// The rolling snapshot of the open conversations, and what is made of it after a reboot. Pure.
// Items are JSON objects as they stand in the files: "sid", "cwd", "title", "busy", "last_seen",
// and "terminal" when the program that drew the tab is known.
#pragma once

#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "core/json_file.h"
#include "core/time.h"

#include "app/model/records/session.h"

namespace zelvane {

/// One conversation. A day may have hundreds, all of which are written again and again: what has
/// ended stays as it is, and is not made into text anew.
struct SnapshotItem {
  double lastSeen = 0;  ///< seconds since 1970
  std::string text;     ///< the JSON object, as it stands in the file
};

/// What is remembered between two looks at the rows.
struct SnapshotMemory {
  std::map<std::string, SnapshotItem> items;  ///< by session id; kept for a day
  std::string signature;                      ///< of the rows when it was last written
  Time writtenAt = distantPast;
};

/// Takes the rows up; the file's new text when it is due, at most every ten seconds while nothing
/// that matters changes.
std::optional<std::string> autosnapshot(const std::vector<ZelvaneSession>& rows,
                                        SnapshotMemory& memory, Time now);

/// The snapshot with the mark of a quit on purpose; nothing when there was none.
std::optional<Json> quitMarked(std::optional<Json> snapshot, Time now);

struct RebootFindings {
  std::map<std::string, SnapshotItem> tracked;  ///< to go on with, by session id
  std::optional<Json> rebootSnapshot;  ///< to be written: what was open when the machine went down
};

/// Judges at start-up whether the machine was started anew since the snapshot was written.
/// `rebootSnapshot` is the one that lies there already.
RebootFindings checkReboot(const std::optional<Json>& snapshot,
                           const std::optional<Json>& rebootSnapshot, Time bootTime, Time now);

/// Those of a reboot snapshot's items that can be reopened: not running, and with their folder.
std::vector<Json> pendingItems(const std::optional<Json>& rebootSnapshot,
                               const std::set<std::string>& live,
                               const std::function<bool(const std::string&)>& folderExists);

}  // namespace zelvane
