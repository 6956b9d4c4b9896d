#include "app/hook/record_file.h"

#include <cerrno>
#include <dirent.h>
#include <fcntl.h>
#include <filesystem>
#include <memory>
#include <sys/stat.h>
#include <unistd.h>

#include "core/file_lock.h"
#include "core/private_folder.h"
#include "core/text.h"

namespace zelvane {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t largestRecord = std::size_t{8} << 20;

/// Sessions share a fixed set of lock files: one of their own each would have to be removed some
/// day, and no file can be removed safely that others may be about to lock.
std::string lockFile(const RecordFolder& folder, const std::string& sessionId) {
  std::uint32_t hash = 2166136261U;  // FNV-1a
  for (const char c : sessionId) hash = (hash ^ static_cast<unsigned char>(c)) * 16777619U;
  return folder.locks + "/" + std::to_string(hash % 64) + ".lock";
}

/// How a change went: `noTurn` when the others took all the time there was.
enum class Attempt { done, failed, noTurn };

bool replace(const std::string& path, const std::function<void(Json& record)>& change,
             FileTime time) {
  const auto before = JSONFile::load(path, largestRecord).value_or(Json::object());
  Json after = before;
  change(after);
  if (after == before) return true;
  std::error_code unknown;
  const auto written = fs::last_write_time(path, unknown);
  if (!JSONFile::writeAtomic(after, path)) return false;
  if (time == FileTime::stays && !unknown) fs::last_write_time(path, written, unknown);
  return true;
}

}  // namespace

RecordFolder RecordFolder::in(const std::string& dataFolder) {
  return {.records = dataFolder + "/sessions", .locks = dataFolder + "/w"};
}

bool changeRecord(const RecordFolder& folder, const std::string& sessionId,
                  const std::function<void(Json& record)>& change, FileTime time) {
  if (!isSafeFileName(sessionId)) return false;
  const auto path = folder.records + "/" + sessionId + ".json";
  const auto attempt = [&] {
    const FileLock::Scope lock(lockFile(folder, sessionId), folder.patience);
    if (!lock) return errno == EWOULDBLOCK ? Attempt::noTurn : Attempt::failed;
    return replace(path, change, time) ? Attempt::done : Attempt::failed;
  };
  auto result = attempt();
  if (result == Attempt::failed) {
    // The first change ever, or somebody removed the folders.
    (void)makePrivateFolder(folder.locks);
    (void)makePrivateFolder(folder.records);
    result = attempt();
  }
  return result == Attempt::done;
}

/// There may be thousands, and Claude Code waits: one look at each, from within the folder.
void removeRecordsOlderThan(const RecordFolder& folder, Time time) {
  const std::unique_ptr<DIR, int (*)(DIR*)> listing(opendir(folder.records.c_str()), closedir);
  while (const dirent* entry = listing ? readdir(listing.get()) : nullptr) {
    const std::string_view name = entry->d_name;
    const bool ours = name.ends_with(".json") || name.find(".json.tmp") != std::string_view::npos;
    if (!ours) continue;
    struct stat info {};
    const int folderItself = dirfd(listing.get());
    const bool known = fstatat(folderItself, entry->d_name, &info, AT_SYMLINK_NOFOLLOW) == 0;
    if (!known || !S_ISREG(info.st_mode)) continue;
    const bool old = timeAt(static_cast<double>(info.st_mtime)) < time;
    if (old) unlinkat(folderItself, entry->d_name, 0);
  }
}

}  // namespace zelvane
