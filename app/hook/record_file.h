// The records on disk: one file per session, changed by several hooks at once. Any thread.
#pragma once

#include <functional>
#include <string>

#include "core/json_file.h"
#include "core/time.h"

namespace zelvane {

/// Where records lie and how long a change waits for its turn.
struct RecordFolder {
  std::string records;            ///< one SESSIONID.json per session
  std::string locks;              ///< the helper's own lock files
  Seconds patience = Seconds(2);  ///< below the client's limit for a hook

  /// The folders in a data folder.
  static RecordFolder in(const std::string& dataFolder);
};

/// Whether a record's file tells the time of the change, or still that of the one before: it means
/// "when a hook last told something".
enum class FileTime { moves, stays };

/// Changes a session's record: read, changed and replaced whole while no other change of it can
/// begin. A missing or damaged record is an empty object; one that `change` leaves as it was is not
/// written. Folders are made when missing. False when nothing could be written, the others took all
/// the time there was, or the id is no plain file name.
bool changeRecord(const RecordFolder& folder, const std::string& sessionId,
                  const std::function<void(Json& record)>& change, FileTime time = FileTime::moves);

/// Removes records (and what a killed writer left) that nobody has written to since the given time.
void removeRecordsOlderThan(const RecordFolder& folder, Time time);

}  // namespace zelvane
