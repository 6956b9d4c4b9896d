// The user's own words about each session: titles and memos, kept in one file so that none is lost.
// Any thread, and no call but the constructor, `flush` and `reloadIfChanged` waits for a file.
#pragma once

#include <functional>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "core/serial_queue.h"
#include "core/time.h"

#include "app/notes/notes_folder.h"
#include "app/notes/notes_memory.h"

namespace zelvane {

class NotesStore {
 public:
  struct Options {
    std::string dir;        ///< the notes folder, made when needed
    bool readOnly = false;  ///< nothing is written, cleaned or logged
    Clock clock = systemTime;
    std::shared_ptr<NotesDisk> disk = systemNotesDisk();
    Seconds saveDelay = Seconds(0.5);
    Seconds retryDelay = Seconds(5.0);
    Seconds lockPatience = Seconds(5.0);  ///< longest wait for another process's save
  };
  /// Called with the problem after each change of it, on the thread that changed it.
  using ProblemObserver = std::function<void(const std::optional<std::string>& problem)>;

  /// Loads what lies in the folder.
  explicit NotesStore(const Options& options);
  /// Saves what is not saved yet, or leaves it in the log of removed notes when that fails. Must
  /// not run on a callback of this store.
  ~NotesStore();
  NotesStore(const NotesStore&) = delete;
  NotesStore& operator=(const NotesStore&) = delete;

  /// The notes of the session; empty when there are none.
  NotesEntry entry(const std::string& id) const;
  /// What the user must know about his notes, as a sentence; nothing while all is well.
  std::optional<std::string> problem() const;
  void setProblem(const std::optional<std::string>& problem);
  void onProblem(ProblemObserver observer);

  /// Changes a session's title: cleaned to one line of at most 80 characters; none or blank removes
  /// it. Shown at once, saved half a second after the last change.
  void setTitle(const std::string& id, const std::optional<std::string>& title);
  /// Changes a session's memo, kept as typed; none or blank removes it.
  void setMemo(const std::string& id, const std::optional<std::string>& memo);
  /// Copies the notes of one session to another that has none; true when that changed something.
  bool carry(const std::string& from, const std::string& to);
  /// To be told once after an editor changed a memo step by step: what the memo was before goes
  /// into the log of removed notes, unless it is still there.
  void memoEditEnded(const std::string& id, const std::string& original);

  /// Saves half a second from now; later calls put the save off.
  void scheduleSave();
  /// Saves now, and returns when that is done or has failed: then why, as a sentence without its
  /// end. Nothing when all is saved, or nothing may be written.
  std::optional<std::string> flush();
  /// Takes over what another process wrote into the file; true when notes changed by it. Costs one
  /// look at the file's attributes when nothing happened.
  bool reloadIfChanged();

  /// From here on nothing is written.
  void setReadOnly();

 private:
  void mutate(const std::string& id, const std::function<void(NotesEntry&)>& change);
  void appendRemoved(const std::vector<RemovedText>& removed);
  std::error_code writeLog();
  std::error_code logLost(const std::vector<RemovedText>& lost);
  void logUnsaved();
  std::optional<std::string> writeNow();
  std::error_code written(const NotesChanges& changes);
  std::error_code write(const NotesChanges& changes);
  std::error_code writeMerged(const NotesChanges& changes);
  void retryLater();
  bool reload();
  NotesChanges unsaved() const;
  void runOnQueue(const std::function<void()>& task);
  bool mayWrite() const { return writable_ && !readOnly_; }
  bool mayWriteNow() const {
    const std::lock_guard lock(lock_);
    return mayWrite();
  }

  const Clock clock_;
  const Seconds saveDelay_;
  const Seconds retryDelay_;

  mutable std::mutex lock_;  ///< guards the fields down to the next comment; never held for a file
  NotesMemory memory_;
  bool writable_ = true;  ///< cleared when loading found that writing could destroy notes
  bool dirty_ = false;
  bool retrying_ = false;
  bool readOnly_;
  std::optional<std::string> problem_;
  ProblemObserver onProblem_;
  std::map<std::string, std::string> loggedMemos_;  ///< of others, logged when they were replaced
  std::uint64_t pending_ = 0;         ///< number of the scheduled save; all earlier ones are void
  std::optional<FileIdentity> seen_;  ///< the main file as it was last read or written

  // On the queue only, once the store is made.
  NotesFolder folder_;
  NotesMap known_;                          ///< what the file held when last read or written
  std::optional<std::size_t> fingerprint_;  ///< of the file then; none when it was not good
  std::string unlogged_;                    ///< lines that are not in the log yet
  std::vector<RemovedText> lost_;           ///< logged for a save that has not succeeded yet

  SerialQueue io_{"zelvane.notes"};  ///< last, so that it ends before what its tasks use
};

}  // namespace zelvane
