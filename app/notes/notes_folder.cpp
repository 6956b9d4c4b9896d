#include "app/notes/notes_folder.h"

#include <algorithm>
#include <functional>
#include <new>
#include <unistd.h>

#include "core/localization.h"

namespace zelvane {
namespace {

using State = NotesFolder::Main::State;

constexpr Seconds staleAfter(3600);
constexpr int temporaryNames = 100;
constexpr std::int64_t keptNames = 100;
constexpr std::uint32_t privateMode = 0600;
constexpr std::string_view temporaryPrefix = "notes.json.sb-";
constexpr std::string_view backupTemporary = "notes.bak.tmp";

std::string folderOf(const std::string& path) { return path.substr(0, path.rfind('/')); }

}  // namespace

std::size_t notesFingerprint(std::string_view bytes) {
  return std::hash<std::string_view>{}(bytes);
}

NotesFolder::Main NotesFolder::readMain(std::optional<std::size_t> known) const {
  Main main{.identity = mainIdentity()};
  if (!disk_->exists(mainFile())) return main;
  auto bytes = disk_->read(mainFile());
  if (!bytes) {
    main.state = State::unreadable;
    return main;
  }
  main.bytes = std::move(*bytes);
  main.fingerprint = notesFingerprint(main.bytes);
  if (main.fingerprint == known) {
    main.state = State::known;
    return main;
  }
  try {
    auto notes = decodeNotes(main.bytes);
    main.state = notes ? State::good : State::damaged;
    if (notes) main.notes = std::move(*notes);
  } catch (const std::bad_alloc&) {
    main.state = State::unreadable;  // it may be good
  }
  return main;
}

NotesFolder::Loaded NotesFolder::load(NotesAccess access) {
  if (access == NotesAccess::readWrite) cleanTemp();
  auto main = readMain(std::nullopt);
  Loaded loaded;
  if (main.isGood()) {
    loaded.notes = std::move(main.notes);
    loaded.fingerprint = main.fingerprint;
  } else if (main.state != State::missing || disk_->exists(backupFile())) {
    loaded = loadBackup(main, access);
  }
  loaded.identity = main.identity;
  return loaded;
}

std::optional<NotesMap> NotesFolder::readBackup() const {
  const auto bytes = disk_->read(backupFile());
  try {
    return bytes ? decodeNotes(*bytes) : std::nullopt;
  } catch (const std::bad_alloc&) {
    return std::nullopt;
  }
}

NotesFolder::Loaded NotesFolder::loadBackup(const Main& main, NotesAccess access) {
  const bool kept = main.state == State::missing || keepCorrupt("notes", access);
  const auto notes = readBackup();
  if (!notes) {
    if (disk_->exists(backupFile())) (void)keepCorrupt("notes.bak", access);
    return {.writable = false,
            .problem = LF("메모 파일을 읽지 못해서 원본을 그대로 두었어요. 지금 쓰는 메모는 "
                          "저장되지 않아요 (%@).",
                          {dir_})};
  }
  const auto problem =
      kept ? "메모 파일이 깨져서 백업에서 읽었어요. 깨진 파일은 따로 보관했어요 (%@)."
           : "메모 파일을 읽지 못해 백업을 보여 주고 있어요. 원본을 지키려고 저장은 멈췄어요 (%@).";
  return {.notes = *notes, .writable = kept, .problem = LF(problem, {dir_})};
}

/// Removes what interrupted saves left, once it is certain that no save is still at it.
void NotesFolder::cleanTemp() {
  cleanTemp(dir_);
  // Where the main file is a link, its temporary files lie beside what it leads to.
  const auto real = folderOf(disk_->resolved(mainFile()));
  if (real != dir_) cleanTemp(real);
}

void NotesFolder::cleanTemp(const std::string& folder) {
  for (const auto& name : disk_->list(folder)) {
    const bool isBackup = folder == dir_ && name == backupTemporary;
    if (!name.starts_with(temporaryPrefix) && !isBackup) continue;
    const auto path = folder + '/' + name;
    const auto identity = disk_->identity(path);
    if (!identity) continue;
    const Time modified = timeAt(static_cast<double>(identity->modified) / 1e9);
    if (clock_() - modified > staleAfter) (void)disk_->remove(path);
  }
}

/// Keeps the bytes of BASE.json as BASE.corrupt-SECONDS.json, once; true when they are kept.
bool NotesFolder::keepCorrupt(const std::string& base, NotesAccess access) {
  const auto bytes = disk_->read(path(base + ".json"));
  if (!bytes) return false;
  const std::string prefix = base + ".corrupt-";
  const auto names = disk_->list(dir_);
  const bool kept = std::any_of(names.begin(), names.end(), [&](const auto& name) {
    return name.starts_with(prefix) && disk_->read(path(name)) == bytes;
  });
  if (kept) return true;
  if (access == NotesAccess::readOnly) return false;
  const auto now = wholeSeconds(clock_());
  // Two different damaged files within one second are both kept. On a disk that tells nothing any
  // more every name looks taken.
  for (std::int64_t second = now; second < now + keptNames; ++second) {
    const auto target = path(prefix + std::to_string(second) + ".json");
    if (!disk_->exists(target)) return !writeAtomically(target, *bytes) && !disk_->syncFolder(dir_);
  }
  return false;
}

std::unique_ptr<FileLock::Scope> NotesFolder::waitForTurn() const {
  return std::make_unique<FileLock::Scope>(path("notes.json.lock"), patience_);
}

std::error_code NotesFolder::replaceMain(std::string_view bytes, const Main& current) {
  if (bytes.size() > largestNotesFile) return std::make_error_code(std::errc::file_too_large);
  if (current.state == State::unreadable) return std::make_error_code(std::errc::io_error);
  if (current.state == State::damaged && !keepCorrupt("notes", NotesAccess::readWrite)) {
    return std::make_error_code(std::errc::io_error);
  }
  const auto target = disk_->resolved(mainFile());
  // First, because this is where a full disk shows: the backup is not given up for nothing.
  const auto temporary = makeTemporary(target, bytes);
  if (temporary.failed) return temporary.failed;
  const auto failed = rotateAndRename(bytes, current, temporary.path, target);
  if (failed) (void)disk_->remove(temporary.path);
  return failed;
}

std::error_code NotesFolder::rotateAndRename(std::string_view bytes, const Main& current,
                                             const std::string& temporary,
                                             const std::string& target) {
  if (mainIdentity() != current.identity) return mainHasChanged;
  // The same bytes again, after a save that failed in its last step: the backup is right as it is.
  if (current.isGood() && current.bytes != bytes) {
    if (const auto failed = rotateBackup(current)) return failed;
  }
  // Again, after what may have taken long: the moment that stays is as short as can be.
  return mainIdentity() == current.identity ? disk_->rename(temporary, target) : mainHasChanged;
}

/// Makes the backup of the bytes that were read and found good, whatever happens to the main file.
std::error_code NotesFolder::rotateBackup(const Main& current) {
  const auto temporary = path(backupTemporary);
  (void)disk_->remove(temporary);
  const auto mode = current.identity ? current.identity->mode : privateMode;
  auto failed = disk_->create(temporary, current.bytes, mode);
  if (!failed) failed = disk_->rename(temporary, backupFile());
  if (failed) (void)disk_->remove(temporary);
  return failed;
}

std::error_code NotesFolder::writeAtomically(const std::string& target, std::string_view bytes) {
  const auto temporary = makeTemporary(target, bytes);
  if (temporary.failed) return temporary.failed;
  const auto failed = disk_->rename(temporary.path, target);
  if (failed) (void)disk_->remove(temporary.path);
  return failed;
}

/// The bytes in a new file beside the target, which it may be renamed over; no file on failure.
NotesFolder::Temporary NotesFolder::makeTemporary(const std::string& target,
                                                  std::string_view bytes) {
  const auto identity = disk_->identity(target);
  const auto mode = identity ? identity->mode : privateMode;
  const auto prefix =
      folderOf(target) + '/' + std::string(temporaryPrefix) + std::to_string(getpid()) + '-';
  Temporary temporary{"", std::make_error_code(std::errc::file_exists)};
  for (int i = 0; i < temporaryNames && temporary.failed == std::errc::file_exists; ++i) {
    temporary.path = prefix + std::to_string(i);
    temporary.failed = disk_->create(temporary.path, bytes, mode);
  }
  const bool isOurs = temporary.failed != std::errc::file_exists;
  if (temporary.failed && isOurs) (void)disk_->remove(temporary.path);
  return temporary;
}

std::error_code NotesFolder::sync() {
  if (const auto failed = disk_->syncFolder(dir_)) return failed;
  // The main file may be a link to a file that the user keeps elsewhere.
  const auto real = folderOf(disk_->resolved(mainFile()));
  return real == dir_ ? std::error_code{} : disk_->syncFolder(real);
}

std::string NotesFolder::readLog() const { return disk_->read(logFile()).value_or(""); }

std::error_code NotesFolder::appendToLog(std::string_view lines) {
  const bool isNew = !disk_->exists(logFile());
  const auto failed = disk_->appendLines(logFile(), lines);
  // The save that follows forgets the texts: the name of their log must not get lost after that.
  return failed || !isNew ? failed : disk_->syncFolder(dir_);
}

}  // namespace zelvane
