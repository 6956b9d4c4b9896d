#include "core/installer/settings_file.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

#include "platform/file_exchange.h"
#include "platform/file_sync.h"

#include "core/installer/file_placing.h"
#include "core/installer/hook_entries.h"
#include "core/installer/settings_json.h"
#include "core/localization.h"

namespace zelvane {
namespace {

namespace fs = std::filesystem;

constexpr int attempts = 3;
constexpr Seconds justNow(10.0);
constexpr std::size_t keptBackups = 5;
constexpr std::uint32_t usualMode = 0644;

std::optional<struct stat> attributes(const std::string& path) {
  struct stat info {};
  if (lstat(path.c_str(), &info) != 0) return std::nullopt;
  return info;
}

/// When the item was modified, in nanoseconds since 1970.
std::optional<std::int64_t> modified(const std::string& path) {
  std::error_code failed;
  if (!fs::exists(fs::symlink_status(path, failed))) return std::nullopt;
  const auto time = fs::last_write_time(path, failed);
  if (failed) return std::nullopt;
  const auto since = std::chrono::file_clock::to_sys(time).time_since_epoch();
  return std::chrono::duration_cast<std::chrono::nanoseconds>(since).count();
}

std::optional<std::string> bytesOf(const std::string& path) {
  return readFile(path, JSONFile::defaultLimit);
}

std::string folderOf(const std::string& path) { return fs::path(path).parent_path().string(); }

std::string processId() { return std::to_string(getpid()); }

SettingsFile::Read refused(std::string message) {
  return SettingsFile::Refused{std::move(message)};
}

/// The settings behind the bytes, unless something is wrong with them.
SettingsFile::Read vetted(std::string data, std::string path) {
  auto settings = parseSettings(data);
  if (!settings) {
    return refused(
        L("Claude 설정 파일(settings.json)을 읽을 수 없어서 아무것도 바꾸지 않았어요. "
          "파일을 고친 뒤 다시 시도해 주세요."));
  }
  if (hasDuplicateKeys(data)) {
    return refused(
        L("Claude 설정 파일에 같은 이름의 항목이 두 번 있어서, "
          "실제 설정이 바뀌지 않도록 건드리지 않았어요."));
  }
  if (settings->contains("hooks") && !settings->at("hooks").is_object()) {
    return refused(L("Claude 설정의 hooks 모양이 예상과 달라서 아무것도 바꾸지 않았어요."));
  }
  return SettingsFile::Ready{std::move(*settings), std::move(data), std::move(path)};
}

}  // namespace

std::optional<std::string> SettingsFile::realPath() const {
  std::error_code failed;
  const auto real = fs::canonical(path(), failed);
  if (failed) return std::nullopt;
  return real.string();
}

std::optional<Json> SettingsFile::read() const {
  const auto bytes = bytesOf(path());
  return bytes ? parseSettings(*bytes) : std::nullopt;
}

SettingsFile::Read SettingsFile::readForEdit() const {
  if (!mayExist(path())) {
    const auto info = attributes(path());
    if (!info || !S_ISLNK(info->st_mode)) return Absent{};
    return refused(L("Claude 설정 파일이 가리키는 곳을 찾을 수 없어서 아무것도 바꾸지 않았어요."));
  }
  const auto real = realPath();
  auto data = real ? bytesOf(*real) : std::nullopt;
  if (!data) {
    return refused(
        L("Claude 설정 파일(settings.json)을 읽을 수 없어서 아무것도 바꾸지 않았어요. "
          "권한을 확인해 주세요."));
  }
  const auto changed = modified(*real);
  const auto age = changed ? clock_() - timeAt(static_cast<double>(*changed) / 1e9) : justNow;
  if (isBlank(*data) && age < justNow) {
    return refused(
        L("Claude 설정 파일이 방금 바뀌는 중이라 아무것도 바꾸지 않았어요. "
          "잠시 뒤 다시 시도해 주세요."));
  }
  if (access(real->c_str(), W_OK) != 0) {
    return refused(
        L("Claude 설정 파일이 읽기 전용으로 잠겨 있어서 바꾸지 않았어요. "
          "잠금을 푼 뒤 다시 시도해 주세요."));
  }
  return vetted(std::move(*data), *real);
}

/// What one attempt found and means to write.
struct SettingsFile::Attempt {
  bool existed = false;
  Json before = Json::object();
  std::string data;
  std::string path;
  std::optional<std::int64_t> modifiedAt;
  std::uint32_t mode = usualMode;
  std::string out;
  std::string backup;

  std::string beside(const char* name) const { return folderOf(path) + name + processId(); }
};

Outcome SettingsFile::edit(const std::function<void(Json& settings)>& change) const {
  for (int i = 0; i < attempts; ++i) {
    if (auto outcome = attempt(change)) return *outcome;
  }
  return Outcome::failed(
      L("Claude 가 설정 파일을 계속 고치고 있어서 잠시 뒤 다시 시도해 주세요. "
        "아무것도 바꾸지 않았어요."));
}

/// Nothing when somebody else wrote to the file meanwhile.
std::optional<Outcome> SettingsFile::attempt(
    const std::function<void(Json& settings)>& change) const {
  Attempt attempt;
  if (auto refused = begin(attempt)) return refused;
  if (testBeforeWrite) testBeforeWrite();
  Json after = attempt.before;
  change(after);
  if (after == attempt.before) return Outcome::ok("");
  auto out = settingsText(after);
  if (!out) return Outcome::failed(L("설정을 만들지 못했어요. 아무것도 바꾸지 않았어요."));
  attempt.out = std::move(*out);
  if (const auto info = attributes(attempt.path)) attempt.mode = info->st_mode & 07777U;
  if (attempt.existed) {
    attempt.backup = nameNow(path() + ".zelvane-backup-");
    if (!createPrivate(attempt.backup, attempt.data, 0600)) {
      return Outcome::failed(L("백업을 만들지 못해서 아무것도 바꾸지 않았어요."));
    }
    pruneBackups();
  }
  auto outcome = untouched(attempt) ? replace(attempt) : std::nullopt;
  if (!outcome && attempt.existed) unlink(attempt.backup.c_str());
  return outcome;
}

std::optional<Outcome> SettingsFile::begin(Attempt& attempt) const {
  auto read = readForEdit();
  if (const auto* refused = std::get_if<Refused>(&read)) return Outcome::failed(refused->message);
  if (auto* ready = std::get_if<Ready>(&read)) {
    attempt.existed = true;
    attempt.before = std::move(ready->settings);
    attempt.data = std::move(ready->data);
    attempt.path = std::move(ready->path);
    attempt.modifiedAt = modified(attempt.path);
  } else {
    attempt.path = path();
  }
  return std::nullopt;
}

bool SettingsFile::untouched(const Attempt& attempt) const {
  if (!attempt.existed) return !mayExist(path());
  return bytesOf(attempt.path) == attempt.data && modified(attempt.path) == attempt.modifiedAt;
}

std::optional<Outcome> SettingsFile::replace(const Attempt& attempt) const {
  const auto temporary = attempt.beside("/.settings.json.zelvane-tmp");
  std::error_code ignored;
  fs::create_directories(folderOf(attempt.path), ignored);
  (void)takeAway(temporary, attempt);
  if (!createPrivate(temporary, attempt.out, attempt.mode)) {
    return Outcome::failed(L("설정 파일을 쓰지 못했어요. 아무것도 바꾸지 않았어요."));
  }
  const auto placed = attempt.existed
                          ? placeOver(temporary, attempt.out, attempt.path, attempt.data)
                          : placeNew(temporary, attempt.path);
  if (placed == Placed::tooLate) return std::nullopt;
  if (placed == Placed::refused) {
    return Outcome::failed(L("설정 파일을 바꾸지 못했어요. 아무것도 바꾸지 않았어요."));
  }
  if (placed == Placed::stuck) {
    return Outcome::failed(
        LF("다른 프로그램이 방금 쓴 Claude 설정을 제자리에 되돌려 놓지 못했어요. 그 내용은 %@ 에 "
           "있어요.",
           {takeAway(temporary, attempt).value_or(temporary)}));
  }
  return verify(attempt);
}

/// Nothing when there had been no settings and now there are somebody else's: they stay. Where
/// there had been some, those come back whatever was written since: the one who began from them is
/// told, and both versions are kept.
std::optional<Outcome> SettingsFile::verify(const Attempt& attempt) const {
  const auto written = bytesOf(attempt.path);
  const auto result = written ? parseSettings(*written) : std::nullopt;
  const bool blank = written && isBlank(*written);
  if (result && !blank && sameExceptOurs(attempt.before, *result)) {
    // Until then a power cut may bring the old file back, whole.
    (void)platform::syncFolder(folderOf(attempt.path));
    return Outcome::ok("");
  }
  if (!attempt.existed && result && written != attempt.out) return std::nullopt;
  const auto theirs = rollBack(attempt);
  auto message = L("쓴 결과가 예상과 달라서 원래 설정으로 되돌렸어요.");
  if (theirs) message += " " + LF("그 사이에 다른 프로그램이 쓴 내용은 %@ 에 있어요.", {*theirs});
  return Outcome::failed(std::move(message));
}

/// Brings back what was there before. The name under which somebody else's settings are kept, if
/// any were in place.
std::optional<std::string> SettingsFile::rollBack(const Attempt& attempt) const {
  if (!attempt.existed) return takeAway(attempt.path, attempt);
  const auto restore = attempt.beside("/.settings.json.zelvane-restore");
  (void)takeAway(restore, attempt);
  if (!createPrivate(restore, attempt.data, attempt.mode)) return std::nullopt;
  if (!platform::exchangeFiles(restore, attempt.path)) return takeAway(restore, attempt);
  const auto theirs = copyOfTheirs(attempt);
  if (theirs == attempt.path) {
    unlink(restore.c_str());
  } else {
    (void)std::rename(restore.c_str(), attempt.path.c_str());
  }
  return theirs;
}

/// Removes the file when it is ours; keeps it under another name when it is somebody else's, and
/// returns that name, or the old one when that failed.
std::optional<std::string> SettingsFile::takeAway(const std::string& path,
                                                  const Attempt& attempt) const {
  if (!attributes(path) && errno == ENOENT) return std::nullopt;
  const auto bytes = bytesOf(path);
  if (bytes == attempt.out || bytes == attempt.data) {
    unlink(path.c_str());
    return std::nullopt;
  }
  const auto name = nameNow(attempt.path + ".zelvane-theirs-");
  return std::rename(path.c_str(), name.c_str()) == 0 ? name : path;
}

/// Keeps what lies in place when it is somebody else's, without moving it: a name is never without
/// a file. The name of the copy, or of the file itself when none could be made.
std::optional<std::string> SettingsFile::copyOfTheirs(const Attempt& attempt) const {
  const auto bytes = bytesOf(attempt.path);
  if (!bytes || bytes == attempt.out || bytes == attempt.data) return std::nullopt;
  const auto name = nameNow(attempt.path + ".zelvane-theirs-");
  return createPrivate(name, *bytes, 0600) ? name : attempt.path;
}

/// A name of this moment and process that nothing has.
std::string SettingsFile::nameNow(const std::string& start) const {
  const auto milliseconds = static_cast<std::int64_t>(secondsSince1970(clock_()) * 1000);
  const auto name = start + std::to_string(milliseconds) + "-" + processId();
  auto free = name;
  for (int i = 2; i < 100 && mayExist(free); ++i) free = name + "-" + std::to_string(i);
  return free;
}

/// Keeps the newest ones: their names begin with the time.
void SettingsFile::pruneBackups() const {
  std::vector<std::string> names;
  std::error_code failed;
  for (auto entry = fs::directory_iterator(claudeDir_, failed); !failed && entry != fs::end(entry);
       entry.increment(failed)) {
    auto name = entry->path().filename().string();
    if (name.starts_with("settings.json.zelvane-backup-")) names.push_back(std::move(name));
  }
  std::sort(names.begin(), names.end());
  for (std::size_t i = 0; i + keptBackups < names.size(); ++i) {
    unlink((claudeDir_ + "/" + names[i]).c_str());
  }
}

}  // namespace zelvane
