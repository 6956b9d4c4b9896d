#include "app/model/store/store.h"

#include <algorithm>

#include "core/bundle.h"
#include "core/paths.h"
#include "core/private_folder.h"
#include "core/process.h"

#include "app/model/refresh/offers.h"
#include "app/model/store/saved_settings.h"

namespace zelvane {

ZelvaneStore::Options ZelvaneStore::systemOptions(std::shared_ptr<UserDefaults> defaults,
                                                  Executor mainThread) {
  const auto program = Bundle::auxiliaryExecutable("zelvane");
  const auto terminal = std::make_shared<Terminal>();
  return {.sources = systemSources(terminal),
          .defaults = std::move(defaults),
          .mainThread = std::move(mainThread),
          .clock = systemTime,
          .notesDir = ZelvanePaths::notes(),
          .dataDir = Paths::zelvane(),
          .hookSessions = Paths::hookSessions(),
          .watchedFolders = {Paths::claudeSessions(), Paths::hookSessions()},
          .restoreCommand = program ? restoreCommand(*program) : nullptr,
          .jump = [terminal](const std::string& tty,
                             std::int32_t pid) { (void)terminal->jump(tty, pid); },
          .bootTime = Procs::bootTime};
}

std::shared_ptr<ZelvaneStore> ZelvaneStore::create(Options options) {
  const std::shared_ptr<ZelvaneStore> store(new ZelvaneStore(std::move(options)));
  store->followNotesProblem();
  store->makeOffers();
  return store;
}

ZelvaneStore::ZelvaneStore(Options options)
    : options_(std::move(options)),
      readOnly_(options_.readOnly),
      snapshots_(std::make_shared<SnapshotFiles>(options_.dataDir)),
      notes_(std::make_unique<NotesStore>(NotesStore::Options{
          .dir = options_.notesDir, .readOnly = readOnly_, .clock = options_.clock})),
      q_("zelvane.refresh") {
  settingsVersion_ = options_.defaults->version();
  auto saved = savedSettings(*options_.defaults, options_.clock());
  theme_ = saved.theme;
  anchorTop_ = saved.anchorTop;
  pinned_ = saved.pinned;
  options_.sources.notes = [notes = notes_.get()](const std::string& id) {
    return notes->entry(id);
  };
  options_.sources.rebootSnapshot = [files = snapshots_] { return files->rebootSnapshot(); };
  memory_.friends.friendOf = std::move(saved.friendOf);
  memory_.friends.friendSeen = std::move(saved.friendSeen);
  shared_ = {.acked = std::move(saved.acked),
             .pins = std::move(saved.pinned),
             .visible = visible_,
             .readOnly = readOnly_};
}

ZelvaneStore::~ZelvaneStore() {
  // The queue's tasks use the watcher, and the watcher asks the queue for passes: the queue stops
  // first, while the watcher still lives, and is still there for the watcher's last request.
  q_.stop();
  watcher_.reset();
}

void ZelvaneStore::start() {
  if (!readOnly_) (void)makePrivateFolder(options_.hookSessions);
  watcher_ = std::make_unique<platform::FolderWatcher>(options_.watchedFolders,
                                                       [this] { scheduleRefresh(); });
  q_.post([this] { checkReboot(); });
  q_.postEvery(options_.tick, [this] { tick(); });
  refreshNow();
}

void ZelvaneStore::refreshNow() {
  q_.post([this] { runPass(); });
}

void ZelvaneStore::scheduleRefresh() {
  q_.post([this] { requestPass(); });
}

/// On the refresh queue.
void ZelvaneStore::tick() {
  watcher_->recheck();
  requestPass();
}

/// On the refresh queue: one pass, a moment later, for all requests until then.
void ZelvaneStore::requestPass() {
  if (pendingRefresh_) return;
  pendingRefresh_ = true;
  q_.postAfter(options_.coalescing, [this] {
    pendingRefresh_ = false;
    runPass();
  });
}

void ZelvaneStore::makeOffers() {
  const auto changed = [weak = weak_from_this()](RestoreOffers::Change change) {
    const auto self = weak.lock();
    if (!self) return;
    switch (change) {
      case RestoreOffers::Change::pendingRestore:
        return self->notify(Change::pendingRestore);
      case RestoreOffers::Change::recentClosed:
        return self->notify(Change::recentClosed);
      case RestoreOffers::Change::restoring:
        return self->notify(Change::restoring);
      case RestoreOffers::Change::restoreMessage:
        return self->notify(Change::restoreMessage);
    }
  };
  const auto refresh = [weak = weak_from_this()] {
    if (const auto self = weak.lock()) self->refreshNow();
  };
  offers_ = std::make_shared<RestoreOffers>(RestoreOffers::Options{
      options_.restoreCommand, snapshots_, options_.mainThread, options_.clock, changed, refresh});
}

/// Shows the notes' problem, now and whenever it changes, on whatever thread that happens.
void ZelvaneStore::followNotesProblem() {
  const auto take = [weak = weak_from_this(), main = options_.mainThread] {
    main([weak] {
      const auto self = weak.lock();
      if (!self || self->notesProblem_ == self->notes_->problem()) return;
      self->notesProblem_ = self->notes_->problem();
      self->notify(Change::notesProblem);
    });
  };
  notes_->onProblem([take](const auto&) { take(); });
  notesProblem_ = notes_->problem();
}

/// On the refresh queue: fetches, decides, does what was decided, hands the rows to the main
/// thread.
void ZelvaneStore::runPass() {
  if (showsSamples_) return;
  const Time now = options_.clock();
  notes_->reloadIfChanged();
  const auto inputs = gather(options_.sources, memory_, choices(), now);
  if (!inputs.choices.readOnly) keepRecordsUp(inputs, now);
  auto result = refreshPass(inputs, std::move(memory_), now);
  memory_ = std::move(result.memory);
  for (const auto& [from, to] : result.carries) notes_->carry(from, to);
  for (const auto& id : result.acknowledged) acknowledge(id);
  if (result.saveFriends) saveFriends();
  if (result.snapshot) snapshots_->writeSnapshot(*result.snapshot);
  options_.mainThread([weak = weak_from_this(), rows = std::move(result.rows),
                       pending = inputs.pendingRestore, burst = std::move(result.burst)]() mutable {
    const auto self = weak.lock();
    if (self) self->publish(std::move(rows), std::move(pending), burst);
  });
}

/// On the refresh queue.
void ZelvaneStore::keepRecordsUp(const RefreshInputs& inputs, Time now) {
  for (const auto& live : inputs.live) {
    if (live.recordOutdated) options_.sources.keepRecordUp(live.proc, now);
  }
}

/// On the refresh queue: hands a copy of the characters to the main thread, which saves it.
void ZelvaneStore::saveFriends() {
  Json values{{"friendOf", memory_.friends.friendOf}, {"friendSeen", memory_.friends.friendSeen}};
  options_.mainThread([weak = weak_from_this(), values = std::move(values)]() mutable {
    const auto self = weak.lock();
    if (self && !self->readOnly_) self->saveSettings(std::move(values));
  });
}

UserChoices ZelvaneStore::choices() {
  const std::lock_guard lock(lock_);
  return shared_;
}

void ZelvaneStore::publish(std::vector<ZelvaneSession> rows, std::vector<Json> pending,
                           const std::optional<std::vector<Json>>& burst) {
  if (rows != sessions_) {
    sessions_ = std::move(rows);
    notify(Change::sessions);
  }
  offers_->follow(std::move(pending), burst, sessions_);
  followSettings();
  setEditing(editingAfter(editing_, sessions_));
  notify(Change::passed);
}

/// What only we changed need not be read again.
void ZelvaneStore::saveSettings(Json values) {
  settingsVersion_ = options_.defaults->setAll(std::move(values), settingsVersion_);
}

/// Takes over what a command has acknowledged or pinned meanwhile.
void ZelvaneStore::followSettings() {
  const auto version = options_.defaults->version();
  if (std::exchange(settingsVersion_, version) == version) return;
  const auto pinned = savedPins(*options_.defaults);
  bool changed = pinned_ != pinned;
  pinned_ = pinned;
  const auto acked = savedAcked(*options_.defaults, options_.clock());
  {
    const std::lock_guard lock(lock_);
    shared_.pins = pinned_;
    changed = mergeAcked(shared_.acked, acked) || changed;
  }
  if (!changed) return;
  notify(Change::pinned);
  refreshNow();
}

void ZelvaneStore::notify(Change change) {
  // By index: an observer may add another.
  for (std::size_t i = 0; i < observers_.size(); ++i) observers_[i](change);
}

bool ZelvaneStore::clockNeeded() const { return zelvane::clockNeeded(visible_, sessions_); }

void ZelvaneStore::setVisible(bool visible) {
  if (visible == visible_) return;
  visible_ = visible;
  {
    const std::lock_guard lock(lock_);
    shared_.visible = visible;
  }
  notify(Change::visible);
}

void ZelvaneStore::setTheme(ThemeID theme) {
  theme_ = theme;
  if (!readOnly_) options_.defaults->set("theme", std::string(rawValue(theme)));
  notify(Change::theme);
}

void ZelvaneStore::setAnchorTop(bool anchorTop) {
  anchorTop_ = anchorTop;
  if (!readOnly_) options_.defaults->set("anchorTop", anchorTop);
  notify(Change::anchorTop);
}

void ZelvaneStore::setEditing(std::optional<std::string> key) {
  if (key == editing_) return;
  editing_ = std::move(key);
  notify(Change::editing);
}

void ZelvaneStore::showNotes(const std::string& id) {
  const auto note = notes_->entry(id);
  for (auto& row : sessions_) {
    if (row.id != id) continue;
    if (note.title || row.renamed) row.title = note.title.value_or(row.claudeTitle);
    row.renamed = note.title.has_value();
    row.memo = note.memo;
  }
  notify(Change::sessions);
}

void ZelvaneStore::endEditing(const std::optional<std::string>& key) {
  if (!editing_ || (key && key != editing_)) return;
  setEditing(std::nullopt);
  refreshNow();
}

void ZelvaneStore::togglePin(const ZelvaneSession& session) {
  // A command may have pinned another meanwhile.
  setPinned(pinsToggled(savedPins(*options_.defaults), session.id));
  refreshNow();
}

void ZelvaneStore::setPinned(std::vector<std::string> pinned) {
  pinned_ = std::move(pinned);
  saveSettings({{"pinned", pinned_}});
  {
    const std::lock_guard lock(lock_);
    shared_.pins = pinned_;
  }
  notify(Change::pinned);
}

void ZelvaneStore::ack(const std::string& id) { acknowledge(id); }

void ZelvaneStore::open(const ZelvaneSession& session) {
  if (session.state == ZelvaneState::done) {
    ack(session.id);
    refreshNow();
  }
  jump(session);
}

void ZelvaneStore::prepareEffort(const ZelvaneSession& session, const std::string& level,
                                 const std::function<void(const std::string&)>& copyText) {
  copyText("/effort " + level);
  jump(session);
}

/// A click never waits behind a pass.
void ZelvaneStore::jump(const ZelvaneSession& session) {
  if (!session.tty || !options_.jump) return;
  if (!jumpQ_) jumpQ_ = std::make_unique<SerialQueue>("zelvane.jump");
  jumpQ_->post([jump = options_.jump, tty = *session.tty, pid = session.pid] { jump(tty, pid); });
}

/// On the refresh queue, before the first pass.
void ZelvaneStore::checkReboot() {
  auto found = zelvane::checkReboot(snapshots_->snapshot(), snapshots_->rebootSnapshot(),
                                    options_.bootTime(), options_.clock());
  memory_.snapshot.items = std::move(found.tracked);
  if (found.rebootSnapshot && !choices().readOnly) {
    snapshots_->writeRebootSnapshot(*found.rebootSnapshot);
  }
}

void ZelvaneStore::markQuit() {
  if (!readOnly_) snapshots_->markQuit(options_.clock());
}

/// Any thread: marks at once, saves on the main thread.
void ZelvaneStore::acknowledge(const std::string& id) {
  {
    const std::lock_guard lock(lock_);
    shared_.acked[id] = secondsSince1970(options_.clock());
  }
  options_.mainThread([weak = weak_from_this()] {
    const auto self = weak.lock();
    if (!self || self->readOnly_) return;
    saveAcked(*self->options_.defaults, self->choices().acked, self->options_.clock());
  });
}

void ZelvaneStore::setReadOnly() {
  readOnly_ = true;
  notes_->setReadOnly();
  const std::lock_guard lock(lock_);
  shared_.readOnly = true;
}

void ZelvaneStore::showSamples(std::vector<ZelvaneSession> rows) {
  setReadOnly();
  showsSamples_ = true;
  sessions_ = std::move(rows);
  notify(Change::sessions);
}

}  // namespace zelvane
