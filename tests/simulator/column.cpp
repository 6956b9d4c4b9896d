#include "tests/simulator/column.h"

#include <algorithm>

#include "app/hook/record_file.h"
#include "app/hook/upkeep.h"
#include "app/model/records/session_files.h"
#include "tests/simulator/client.h"

namespace zelvane::test {
namespace {

/// A killed process's memory is nobody's: it must not even be cleaned up, which would save things.
std::vector<std::shared_ptr<ZelvaneStore>>& graveyard() {
  static auto* const stores = new std::vector<std::shared_ptr<ZelvaneStore>>;
  return *stores;
}

}  // namespace

Column::Column(World& world, NotesLedger& ledger)
    : world_(world), ledger_(ledger), restorer_(world) {}

Column::~Column() { store_.reset(); }

void Column::launch() {
  world_.journal.event("column starts");
  ++life_;
  launchedAt_ = visibleSince_ = world_.columnSince = world_.time.uptime();
  forgetUnsavedLooks();
  store_ = ZelvaneStore::create(options());
  store_->observe([this](ZelvaneStore::Change change) {
    if (change == ZelvaneStore::Change::passed) published();
  });
  store_->start();
}

void Column::quit() {
  world_.journal.event("column quits");
  world_.columnSince = Seconds(1e12);
  if (DiskSpace::isLimited()) ledger_.writerKilled(0);
  (void)store_->notes().flush();
  store_->markQuit();
  store_.reset();
  mainTasks_.clear();
  unpublished_.clear();
}

void Column::kill() {
  world_.journal.event("column is killed");
  world_.columnSince = Seconds(1e12);
  constexpr double saved = 1;
  ledger_.writerKilled(DiskSpace::isLimited() ? 0 : world_.time.uptime().count() - saved);
  killQueues();
  killWatchers();
  graveyard().push_back(std::move(store_));
  mainTasks_.clear();
  unpublished_.clear();
}

/// What the last run had no time or room to save, it does not know any more; nor what is a week
/// old.
void Column::forgetUnsavedLooks() {
  constexpr double week = 604'800;
  const auto saved = readJSON(world_.machine.settings()).value_or(Json::object());
  const auto acked = saved.value("acked", Json::object());
  const double now = secondsSince1970(world_.time.wall());
  world_.lookedAt.clear();
  for (const auto& [sid, at] : acked.items()) {
    if (now - at.get<double>() <= week) world_.lookedAt[sid] = at.get<double>();
  }
}

ZelvaneStore::Options Column::options() {
  const Machine& machine = world_.machine;
  ZelvaneStore::Options options;
  options.sources = sources();
  options.defaults = std::make_shared<FileDefaults>(machine.settings());
  options.mainThread = [this](std::function<void()> task) { post(std::move(task)); };
  options.clock = [this] { return world_.time.wall(); };
  options.notesDir = machine.notesDir();
  options.dataDir = machine.dataDir();
  options.hookSessions = machine.hookSessions();
  options.watchedFolders = {machine.claudeSessions(), machine.hookSessions()};
  options.restoreCommand = [this](const std::string& snapshot, bool exact,
                                  const std::atomic<bool>& cancelled) {
    return restorer_.run(snapshot, exact, cancelled);
  };
  options.bootTime = [this] { return world_.machine.bootTime(); };
  return options;
}

RefreshSources Column::sources() {
  RefreshSources sources;
  sources.home = "/home/me";
  const auto pause = [this](Seconds seconds) { world_.time.advance(seconds); };
  sources.claudeProcs = [this, files = std::make_shared<SessionFiles>(
                                   world_.machine.claudeSessions(), pause)](Time now) {
    beginView(now);
    return files->read(now);
  };
  sources.tty = [this](std::int32_t pid) { return world_.machine.tty(pid); };
  sources.hookRecord = [records = std::make_shared<HookRecords>(world_.machine.hookSessions())](
                           const std::string& id, Time now) { return records->read(id, now); };
  sources.keepRecordUp = [this](const ClaudeProc& proc, Time now) {
    const auto change = [&](Json& record) { keepUp(record, {proc.status, proc.updatedAt}, now); };
    auto folder = RecordFolder::in(world_.machine.dataDir());
    folder.patience = Seconds(0);
    (void)changeRecord(folder, proc.sessionId, change, FileTime::stays);
    world_.recordTouched(proc.sessionId);
  };
  sources.terminalProgram = [](const auto&) { return "xterm"; };
  sources.terminalTitles = [this](const auto&) {
    TabTitles titles;
    for (const auto& [tty, title] : world_.tabTitles) titles[tty] = title.text;
    return titles;
  };
  sources.frontTTY = [this](const auto&) { return view_.front = world_.front; };
  sources.folderExists = [this](const std::string& path) {
    return world_.machine.folderExists(path);
  };
  sources.alive = [this](std::int32_t pid) { return world_.machine.alive(pid); };
  sources.friendCount = [this] {
    endView();
    return std::size_t{18};
  };
  return sources;
}

/// On the main thread, in order, a moment later.
void Column::post(std::function<void()> task) {
  mainTasks_.push_back(std::move(task));
  auto& time = world_.time;
  mainFree_ = std::max(mainFree_, time.uptime() + world_.dice.seconds(0, 0.005));
  time.after(mainFree_ - time.uptime(), [this, life = life_] {
    if (life != life_ || mainTasks_.empty()) return;
    const auto next = std::move(mainTasks_.front());
    mainTasks_.pop_front();
    next();
  });
}

void Column::beginView(Time now) {
  view_ = {.now = now, .uptime = world_.time.uptime(), .pins = store_->pinned()};
  for (const auto& [name, file] : world_.files) {
    auto tty = world_.machine.tty(file.pid);
    if (!tty) continue;
    auto& row = view_.rows[{file.pid, file.sid}];
    row = {.file = file, .ttyBefore = std::move(tty)};
    row.recordChanges = world_.recordChanges[file.sid];
    const auto looked = world_.lookedAt.find(file.sid);
    if (looked != world_.lookedAt.end()) row.lookedAt = looked->second;
  }
}

void Column::endRow(View::Row& row, const FileTruth& file) {
  row.tty = world_.machine.tty(file.pid);
  row.sure = row.tty && row.tty == row.ttyBefore;
  row.still = row.sure && row.file == file && row.recordChanges == world_.recordChanges[file.sid];
  row.file = file;
  if (!row.sure) return;
  const bool inFront = row.tty && view_.front == row.tty;
  row.expected = expectedState(file, world_.record(file.sid), row.lookedAt, inFront,
                               secondsSince1970(view_.now));
  const Client* client = world_.clientOf(file.sid);
  if (!row.still || !client || client->pid() != file.pid || !client->isHonest()) return;
  row.truth = client->truth(row.lookedAt);
  row.truthSince = client->truthSince();
  if (row.truth == ZelvaneState::done && inFront) row.truth = ZelvaneState::idle;
}

/// What was there at the beginning only may still be shown.
void Column::endView() {
  for (const auto& [name, file] : world_.files) {
    const View::Key key{file.pid, file.sid};
    if (!world_.machine.tty(file.pid) && !view_.rows.contains(key)) continue;
    endRow(view_.rows.try_emplace(key, View::Row{.file = file}).first->second, file);
  }
  for (const auto& [key, row] : view_.rows) {
    if (row.sure && row.expected.seenNow) {
      world_.lookedAt[key.second] = secondsSince1970(world_.time.wall());
    }
  }
  unpublished_.push_back(std::move(view_));
}

void Column::published() {
  const auto view = std::move(unpublished_.front());
  unpublished_.pop_front();
  if (afterPass) afterPass(view);
}

void Column::showOrHide() {
  visibleSince_ = world_.time.uptime();
  store_->setVisible(!store_->visible());
}

void Column::open(const ZelvaneSession& row) {
  if (row.state == ZelvaneState::done) {
    world_.lookedAt[row.id] = secondsSince1970(world_.time.wall());
  }
  world_.front = row.tty;
  store_->open(row);
}

}  // namespace zelvane::test
