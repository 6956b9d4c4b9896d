// The notes folder: which file plays which part, and in what order they are touched so that whole
// notes lie in it at every moment. Not thread-safe, but processes may share a folder.
#pragma once

#include <memory>
#include <optional>
#include <string>

#include "core/file_lock.h"
#include "core/time.h"

#include "app/notes/notes_disk.h"
#include "app/notes/notes_file.h"

namespace zelvane {

/// Whether files may be written at all.
enum class NotesAccess { readOnly, readWrite };

class NotesFolder {
 public:
  /// `patience`: how long to wait at most for another process that writes.
  NotesFolder(std::string dir, std::shared_ptr<NotesDisk> disk, Clock clock, Seconds patience)
      : dir_(std::move(dir)),
        disk_(std::move(disk)),
        clock_(std::move(clock)),
        patience_(patience) {}

  /// The main file as it lies there.
  struct Main {
    enum class State {
      missing,
      unreadable,
      damaged,
      known,  ///< good: these are the very bytes that the caller knows already
      good,
    };
    State state = State::missing;
    std::string bytes;                     ///< where it could be read
    NotesMap notes;                        ///< where it is good, and news
    std::optional<FileIdentity> identity;  ///< as it was just before it was read
    std::size_t fingerprint = 0;           ///< of the bytes

    bool isGood() const { return state == State::known || state == State::good; }
  };

  struct Loaded {
    NotesMap notes;
    bool writable = true;
    std::optional<std::string> problem;
    std::optional<FileIdentity> identity;    ///< of the main file
    std::optional<std::size_t> fingerprint;  ///< of the main file, when the notes came from it
  };

  /// Reads the main file or else the backup, and keeps what is damaged aside.
  Loaded load(NotesAccess access);
  /// Reads the main file; `known` is the fingerprint of what the caller needs not be told again.
  Main readMain(std::optional<std::size_t> known) const;
  std::optional<FileIdentity> mainIdentity() const { return disk_->identity(mainFile()); }

  /// Makes the folder when it is missing.
  std::error_code make() { return disk_->makeFolders(dir_); }
  /// Waits for this process's turn to write, as long as it has patience; the error tells why there
  /// was none. Nothing may be written then: whoever has the turn would write over it.
  std::unique_ptr<FileLock::Scope> waitForTurn() const;
  /// Replaces the main file by the bytes. `current` is what `readMain` found during this turn:
  /// good, it becomes the backup; damaged, it is kept aside; unreadable, nothing is touched. The
  /// error is `mainHasChanged` when another program, without a turn, wrote the file since.
  std::error_code replaceMain(std::string_view bytes, const Main& current);
  /// The last step of a save: what was renamed stays renamed after a power cut.
  std::error_code sync();
  /// The log of removed notes; empty when there is none, or none that can be read.
  std::string readLog() const;
  /// Adds lines to the log of removed notes.
  std::error_code appendToLog(std::string_view lines);

 private:
  std::string path(std::string_view name) const { return dir_ + '/' + std::string(name); }
  std::string mainFile() const { return path("notes.json"); }
  std::string backupFile() const { return path("notes.bak.json"); }
  std::string logFile() const { return path("removed-notes.jsonl"); }
  void cleanTemp();
  void cleanTemp(const std::string& folder);
  std::optional<NotesMap> readBackup() const;
  Loaded loadBackup(const Main& main, NotesAccess access);
  bool keepCorrupt(const std::string& base, NotesAccess access);
  std::error_code rotateBackup(const Main& current);
  std::error_code rotateAndRename(std::string_view bytes, const Main& current,
                                  const std::string& temporary, const std::string& target);
  std::error_code writeAtomically(const std::string& target, std::string_view bytes);
  struct Temporary {
    std::string path;
    std::error_code failed;
  };
  Temporary makeTemporary(const std::string& target, std::string_view bytes);

  std::string dir_;
  std::shared_ptr<NotesDisk> disk_;
  Clock clock_;
  Seconds patience_;
};

/// The error of a save that is to be tried again from what the main file holds now.
inline const auto mainHasChanged = std::make_error_code(std::errc::resource_unavailable_try_again);

/// Stands for bytes that need not be kept to be recognised.
std::size_t notesFingerprint(std::string_view bytes);

}  // namespace zelvane
