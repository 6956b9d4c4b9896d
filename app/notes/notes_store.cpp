#include "app/notes/notes_store.h"

#include <algorithm>
#include <cerrno>
#include <future>
#include <new>
#include <utility>

#include "core/localization.h"

#include "app/notes/notes_text.h"

namespace zelvane {
namespace {

constexpr int savesAtOnce = 3;  // of one that others disturb

/// What went wrong, for the user.
std::string described(const std::error_code& failed) {
  if (failed == std::errc::no_space_on_device || failed.value() == EDQUOT) {
    return L("디스크에 남은 자리가 없어요");
  }
  if (failed == std::errc::permission_denied || failed == std::errc::operation_not_permitted) {
    return L("쓸 권한이 없어요");
  }
  if (failed == std::errc::read_only_file_system) return L("읽기 전용 디스크예요");
  if (failed == std::errc::io_error) return L("디스크를 읽거나 쓰지 못했어요");
  if (failed == std::errc::file_too_large) return L("메모가 너무 커요");
  if (failed == std::errc::not_enough_memory) return L("컴퓨터에 남은 메모리가 없어요");
  if (failed == std::errc::not_a_directory) return L("폴더 자리에 다른 것이 있어요");
  if (failed == std::errc::is_a_directory || failed == std::errc::file_exists ||
      failed == std::errc::no_such_device_or_address) {
    return L("파일 자리에 폴더나 다른 것이 있어요");
  }
  // Somebody else's turn, or a program that writes without one.
  if (failed == std::errc::resource_unavailable_try_again) {
    return L("다른 프로그램이 메모를 쓰는 중이에요");
  }
  return LF("시스템 오류 %d", {std::int64_t{failed.value()}});
}

}  // namespace

NotesStore::NotesStore(const Options& options)
    : clock_(options.clock),
      saveDelay_(options.saveDelay),
      retryDelay_(options.retryDelay),
      readOnly_(options.readOnly),
      folder_(options.dir, options.disk, options.clock, options.lockPatience) {
  auto loaded = folder_.load(readOnly_ ? NotesAccess::readOnly : NotesAccess::readWrite);
  known_ = loaded.notes;
  memory_ = NotesMemory(std::move(loaded.notes));
  fingerprint_ = loaded.fingerprint;
  seen_ = loaded.identity;
  writable_ = loaded.writable;
  problem_ = std::move(loaded.problem);
}

NotesStore::~NotesStore() {
  (void)reloadIfChanged();  // a file that was damaged since the last look is written anew
  if (flush() && mayWriteNow()) runOnQueue([this] { logUnsaved(); });
}

NotesEntry NotesStore::entry(const std::string& id) const {
  NotesEntryPtr found;
  {
    const std::lock_guard lock(lock_);
    found = memory_.find(id);
  }
  return found ? *found : NotesEntry{};
}

std::optional<std::string> NotesStore::problem() const {
  const std::lock_guard lock(lock_);
  return problem_;
}

void NotesStore::setProblem(const std::optional<std::string>& problem) {
  ProblemObserver observer;
  {
    const std::lock_guard lock(lock_);
    if (problem == problem_) return;
    problem_ = problem;
    observer = onProblem_;
  }
  if (observer) observer(problem);
}

void NotesStore::onProblem(ProblemObserver observer) {
  const std::lock_guard lock(lock_);
  onProblem_ = std::move(observer);
}

void NotesStore::setReadOnly() {
  const std::lock_guard lock(lock_);
  readOnly_ = true;
}

void NotesStore::setTitle(const std::string& id, const std::optional<std::string>& title) {
  mutate(id, [&](NotesEntry& entry) { entry.title = title; });
}

void NotesStore::setMemo(const std::string& id, const std::optional<std::string>& memo) {
  // Before the lock is taken: a long memo takes its time.
  auto kept = NotesText::kept(memo);
  mutate(id, [&](NotesEntry& entry) { entry.memo = std::move(kept); });
}

void NotesStore::mutate(const std::string& id, const std::function<void(NotesEntry&)>& change) {
  std::vector<RemovedText> removed;
  {
    const std::lock_guard lock(lock_);
    const auto old = memory_.find(id);
    NotesEntry entry = old ? *old : NotesEntry{};
    change(entry);
    entry.title = NotesText::clean(entry.title);
    if (entry.memo && NotesText::stripped(*entry.memo).empty()) entry.memo = std::nullopt;
    entry.updated = secondsSince1970(clock_());
    const RemovedText title{id, RemovedText::Kind::title, old ? old->title.value_or("") : "",
                            entry.updated};
    const bool titleRemoved = !title.text.empty() && !entry.title;
    removed = memory_.edit(id, std::move(entry));
    if (titleRemoved && std::find(removed.begin(), removed.end(), title) == removed.end()) {
      removed.push_back(title);
    }
    for (const auto& text : removed) {
      if (text.kind == RemovedText::Kind::memo) loggedMemos_[id] = text.text;
    }
    dirty_ = true;
  }
  appendRemoved(removed);
  scheduleSave();
}

bool NotesStore::carry(const std::string& from, const std::string& to) {
  {
    const std::lock_guard lock(lock_);
    const auto source = memory_.find(from);
    if (!source || memory_.find(to)) return false;
    (void)memory_.edit(to, *source);
    dirty_ = true;
  }
  scheduleSave();
  return true;
}

void NotesStore::memoEditEnded(const std::string& id, const std::string& original) {
  const auto before = NotesText::stripped(original);
  {
    const std::lock_guard lock(lock_);
    const auto logged = loggedMemos_.extract(id);
    if (logged && logged.mapped() == original) return;
  }
  const auto memo = entry(id).memo.value_or("");
  if (before.empty() || before == NotesText::stripped(memo)) return;
  appendRemoved({{id, RemovedText::Kind::memo, original, secondsSince1970(clock_())}});
}

void NotesStore::appendRemoved(const std::vector<RemovedText>& removed) {
  if (removed.empty() || !mayWriteNow()) return;
  io_.post([this, removed] {
    for (const auto& text : removed) unlogged_ += removedLine(text);
    (void)writeLog();
  });
}

/// On the queue. What cannot be written now goes with the next save.
std::error_code NotesStore::writeLog() {
  if (unlogged_.empty()) return {};
  (void)folder_.make();
  const auto failed = folder_.appendToLog(unlogged_);
  if (!failed) unlogged_.clear();
  return failed;
}

/// On the queue, before the file or memory loses them, which must not happen after a failure; once,
/// however often the save is tried, and not when somebody else did.
std::error_code NotesStore::logLost(const std::vector<RemovedText>& lost) {
  const auto log = lost.empty() ? "" : folder_.readLog();
  for (const auto& text : lost) {
    const bool again = std::find(lost_.begin(), lost_.end(), text) != lost_.end();
    if (!again && !holds(log, text)) unlogged_ += removedLine(text);
  }
  lost_ = lost;
  const auto failed = writeLog();
  return lost.empty() ? std::error_code() : failed;
}

/// On the queue, at the very end: the log needs no turn, and what is in it can be found.
void NotesStore::logUnsaved() {
  std::vector<RemovedText> texts;
  for (const auto& [id, change] : unsaved()) {
    const auto before = change.before ? *change.before : NotesEntry{};
    const auto after = change.after ? *change.after : NotesEntry{};
    if (after.title && after.title != before.title) {
      texts.push_back({id, RemovedText::Kind::title, *after.title, after.updated});
    }
    if (after.memo && after.memo != before.memo) {
      texts.push_back({id, RemovedText::Kind::memo, *after.memo, after.updated});
    }
  }
  (void)logLost(texts);
}

void NotesStore::scheduleSave() {
  std::uint64_t number = 0;
  {
    const std::lock_guard lock(lock_);
    number = ++pending_;
  }
  io_.postAfter(saveDelay_, [this, number] {
    {
      const std::lock_guard lock(lock_);
      if (number != pending_) return;
    }
    writeNow();
  });
}

std::optional<std::string> NotesStore::flush() {
  {
    const std::lock_guard lock(lock_);
    ++pending_;
  }
  std::optional<std::string> failure;
  runOnQueue([&] { failure = writeNow(); });
  return failure;
}

void NotesStore::runOnQueue(const std::function<void()>& task) {
  // Shared, because the queue is still inside the promise when the waiting thread goes on.
  const auto done = std::make_shared<std::promise<void>>();
  io_.post([&task, done] {
    task();
    done->set_value();
  });
  done->get_future().wait();
}

/// On the queue.
std::optional<std::string> NotesStore::writeNow() {
  NotesChanges changes;
  bool wanted = false;
  {
    const std::lock_guard lock(lock_);
    if (!readOnly_ && !writable_ && dirty_) return L("메모 파일을 읽지 못했어요");
    if (!mayWrite()) return std::nullopt;
    wanted = std::exchange(dirty_, false);
    if (wanted) changes = memory_.changes();
  }
  if (!wanted) {
    (void)writeLog();
    return std::nullopt;
  }
  const auto failed = written(changes);
  if (!failed) {
    setProblem(std::nullopt);
    return std::nullopt;
  }
  const auto reason = described(failed);
  setProblem(LF("메모를 저장하지 못했어요. 5초 뒤 다시 시도해요 (%@)", {reason}));
  retryLater();
  return reason;
}

std::error_code NotesStore::written(const NotesChanges& changes) {
  try {
    return write(changes);
  } catch (const std::bad_alloc&) {
    return std::make_error_code(std::errc::not_enough_memory);
  }
}

/// On the queue: one save from end to end.
std::error_code NotesStore::write(const NotesChanges& changes) {
  if (const auto failed = folder_.make()) return failed;
  const auto turn = folder_.waitForTurn();
  if (const auto failed = turn->error()) return failed;
  auto failed = mainHasChanged;
  for (int i = 0; i < savesAtOnce && failed == mainHasChanged; ++i) failed = writeMerged(changes);
  return failed;
}

/// On the queue, in our turn: merges the changes into the file as it is now.
std::error_code NotesStore::writeMerged(const NotesChanges& changes) {
  auto main = folder_.readMain(fingerprint_);
  const bool changedByOther = main.state == NotesFolder::Main::State::good;
  // A file that is gone or damaged tells nothing about what was removed.
  auto merge = mergeNotes(known_, changedByOther ? std::move(main.notes) : known_, changes);
  if (const auto failed = logLost(merge.lost)) return failed;
  const auto bytes = encodeNotes(merge.notes);
  if (const auto failed = folder_.replaceMain(bytes, main)) return failed;

  known_ = std::move(merge.notes);
  fingerprint_ = notesFingerprint(bytes);
  lost_.clear();
  {
    const auto identity = folder_.mainIdentity();
    const std::lock_guard lock(lock_);
    seen_ = identity;
    memory_.saved(changes);
    memory_.take(merge.news);
  }
  return folder_.sync();
}

/// On the queue.
void NotesStore::retryLater() {
  {
    const std::lock_guard lock(lock_);
    dirty_ = true;
    if (std::exchange(retrying_, true)) return;
  }
  io_.postAfter(retryDelay_, [this] {
    {
      const std::lock_guard lock(lock_);
      retrying_ = false;
    }
    writeNow();
  });
}

NotesChanges NotesStore::unsaved() const {
  const std::lock_guard lock(lock_);
  return memory_.changes();
}

bool NotesStore::reloadIfChanged() {
  const auto identity = folder_.mainIdentity();
  {
    const std::lock_guard lock(lock_);
    if (identity == seen_) return false;
  }
  bool changed = false;
  runOnQueue([&] { changed = reload(); });
  return changed;
}

/// On the queue.
bool NotesStore::reload() {
  auto main = folder_.readMain(fingerprint_);
  NotesNews news;
  if (main.state == NotesFolder::Main::State::good) {
    auto merge = mergeNotes(known_, main.notes, unsaved());
    // What cannot be logged stays in memory; the next look tries again.
    if (mayWriteNow() && logLost(merge.lost)) return false;
    news = std::move(merge.news);
    known_ = std::move(main.notes);
    fingerprint_ = main.fingerprint;
  }
  // Then the newest words may be in memory only, so they are saved, or the user hears that they
  // cannot be.
  const bool broken = !main.isGood() && !known_.empty();
  {
    const std::lock_guard lock(lock_);
    seen_ = main.identity;
    memory_.take(news);
    if (broken) dirty_ = true;
  }
  if (broken) scheduleSave();
  return !news.empty();
}

}  // namespace zelvane
