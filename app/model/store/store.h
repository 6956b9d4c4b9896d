// The store: runs refresh passes, keeps what is remembered between them, publishes the rows.
// Main thread: everything public, unless it says otherwise. Passes run on a queue of its own; their
// results come back through the executor that the owner hands in.
#pragma once

#include <atomic>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "platform/folder_watcher.h"

#include "core/serial_queue.h"
#include "core/user_defaults.h"

#include "app/model/records/theme_id.h"
#include "app/model/refresh/gather.h"
#include "app/model/store/restore_offers.h"
#include "app/notes/notes_store.h"

namespace zelvane {

class ZelvaneStore : public std::enable_shared_from_this<ZelvaneStore> {
 public:
  /// Which published field changed; `passed`: a pass ended, whether or not it changed anything.
  enum class Change {
    sessions,
    pendingRestore,
    restoring,
    restoreMessage,
    recentClosed,
    editing,
    notesProblem,
    visible,
    theme,
    anchorTop,
    pinned,
    passed,
  };
  using Observer = std::function<void(Change)>;

  struct Options {
    RefreshSources sources;
    std::shared_ptr<UserDefaults> defaults;
    Executor mainThread;
    Clock clock;
    std::string notesDir;                     ///< folder of the notes
    std::string dataDir;                      ///< folder of the snapshots
    std::string hookSessions;                 ///< hook records; made by `start` unless read-only
    std::vector<std::string> watchedFolders;  ///< a change in one of them asks for a pass
    RestoreCommand restoreCommand;            ///< empty when there is none
    /// Brings a session's tab to the front; on the jump queue.
    std::function<void(const std::string& tty, std::int32_t pid)> jump;
    std::function<Time()> bootTime = [] { return distantPast; };  ///< of the machine
    bool readOnly = false;  ///< nothing of the user's is written but pins
    Seconds tick = Seconds(10.0);
    Seconds coalescing = Seconds(1.0);
  };

  /// Options for this user's machine, with the given settings and main thread.
  static Options systemOptions(std::shared_ptr<UserDefaults> defaults, Executor mainThread);

  /// Loads the saved settings; starts nothing.
  static std::shared_ptr<ZelvaneStore> create(Options options);
  /// On the main thread. Waits for a pass that still runs, then for the notes to be saved.
  ~ZelvaneStore();
  ZelvaneStore(const ZelvaneStore&) = delete;
  ZelvaneStore& operator=(const ZelvaneStore&) = delete;

  /// Begins to watch and to refresh. Called once.
  void start();
  /// Queues a pass at once. Any thread.
  void refreshNow();
  /// Asks for a pass one second from now; requests until then fold into it. Any thread.
  void scheduleRefresh();
  /// Calls the observer after every change, for the life of the store.
  void observe(Observer observer) { observers_.push_back(std::move(observer)); }

  /// Titles and memos. Whoever changes them asks for a pass.
  NotesStore& notes() { return *notes_; }
  /// Shows the session's title and memo as they are now, ahead of that pass.
  void showNotes(const std::string& id);
  const std::vector<ZelvaneSession>& sessions() const { return sessions_; }
  /// What can be reopened.
  RestoreOffers& offers() const { return *offers_; }
  const std::optional<std::string>& editing() const { return editing_; }
  const std::optional<std::string>& notesProblem() const { return notesProblem_; }
  bool visible() const { return visible_; }
  ThemeID theme() const { return theme_; }
  bool anchorTop() const { return anchorTop_; }
  const std::vector<std::string>& pinned() const { return pinned_; }
  bool readOnly() const { return readOnly_; }
  /// What the passes remember. On the refresh queue.
  const RefreshMemory& memory() const { return memory_; }
  /// Whether a one-second clock has something to show.
  bool clockNeeded() const;

  void setVisible(bool visible);
  /// Saved, unless read-only.
  void setTheme(ThemeID theme);
  void setAnchorTop(bool anchorTop);
  void setEditing(std::optional<std::string> key);
  /// Ends the open editor, if it is the one with the key or no key is given, and refreshes.
  void endEditing(const std::optional<std::string>& key);
  /// Pins the session at the end of the pins, or unpins it; saved, also when read-only.
  void togglePin(const ZelvaneSession& session);
  /// Notes that the user looked at the session now: what finished before is not news any more.
  void ack(const std::string& id);

  /// Goes to the session's tab; a finished turn counts as looked at.
  void open(const ZelvaneSession& session);
  /// Goes to the session's tab, with the command that changes the effort ready to be pasted.
  void prepareEffort(const ZelvaneSession& session, const std::string& level,
                     const std::function<void(const std::string&)>& copyText);

  /// While the machine is going down: what is closed now was open to the end. Any thread.
  void setFrozen(bool frozen) { snapshots_->setFrozen(frozen); }
  /// The application is quit on purpose.
  void markQuit();

  /// From here on nothing is written but pins.
  void setReadOnly();
  /// Shows these rows instead of live ones; the store becomes read-only and must not be started.
  void showSamples(std::vector<ZelvaneSession> rows);

 private:
  explicit ZelvaneStore(Options options);

  void runPass();
  void keepRecordsUp(const RefreshInputs& inputs, Time now);
  void saveFriends();
  void requestPass();
  void checkReboot();
  void jump(const ZelvaneSession& session);
  void publish(std::vector<ZelvaneSession> rows, std::vector<Json> pending,
               const std::optional<std::vector<Json>>& burst);
  void followNotesProblem();
  void makeOffers();
  void saveSettings(Json values);
  void followSettings();
  void acknowledge(const std::string& id);
  void setPinned(std::vector<std::string> pinned);
  void notify(Change change);
  void tick();
  UserChoices choices();

  // Main thread.
  Options options_;
  bool readOnly_;
  std::vector<Observer> observers_;
  std::vector<ZelvaneSession> sessions_;
  std::shared_ptr<RestoreOffers> offers_;
  std::unique_ptr<SerialQueue> jumpQ_;  ///< from the first jump on
  std::optional<std::string> editing_;
  std::optional<std::string> notesProblem_;
  bool visible_ = true;
  ThemeID theme_;
  bool anchorTop_;
  std::vector<std::string> pinned_;
  std::uint64_t settingsVersion_ = 0;

  // Refresh queue.
  RefreshMemory memory_;
  bool pendingRefresh_ = false;

  std::shared_ptr<SnapshotFiles> snapshots_;  ///< any thread
  std::atomic<bool> showsSamples_ = false;    ///< then no pass runs

  // Both, under the lock.
  std::mutex lock_;
  UserChoices shared_;

  std::unique_ptr<NotesStore> notes_;

  // Their threads use everything above; the destructor stops them before anything else.
  SerialQueue q_;
  std::unique_ptr<platform::FolderWatcher> watcher_;
};

}  // namespace zelvane
