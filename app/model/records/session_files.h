// Reads Claude Code's session files and the hook records. Touches nothing else in their folders.
// One thread at a time.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "core/time.h"

#include "app/model/records/claude_proc.h"
#include "app/model/records/hook_record.h"
#include "app/model/records/unchanged_files.h"

namespace zelvane {

/// Lets some time pass. Handed in, so that tests need not wait.
using Pause = std::function<void(Seconds)>;

class SessionFiles {
 public:
  SessionFiles(std::string folder, Pause pause)
      : folder_(std::move(folder)), pause_(std::move(pause)) {}

  /// Every usable session file of the folder, by name. Only regular files whose name ends in
  /// ".json" are opened. The client rewrites its files in place, so one that cannot be read and
  /// changed within the last two seconds is looked at again a few times, for a tenth of a second in
  /// all.
  std::vector<ClaudeProc> read(Time now);

 private:
  struct Content {
    std::optional<ClaudeProc> proc;  ///< nothing in a file that no row comes from
  };

  static std::optional<Content> contentOf(const std::string& path);

  std::string folder_;
  Pause pause_;
  UnchangedFiles<Content> known_;
};

class HookRecords {
 public:
  explicit HookRecords(std::string folder) : folder_(std::move(folder)) {}

  /// The hook record of a session; nothing when its file is missing or damaged, or when the id
  /// could lead out of the folder.
  std::optional<HookRecord> read(const std::string& sessionId, Time now);

 private:
  std::string folder_;
  UnchangedFiles<HookRecord> known_;
};

}  // namespace zelvane
