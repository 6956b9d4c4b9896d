#include "app/model/records/session_files.h"

#include <algorithm>
#include <filesystem>

#include "core/text.h"

namespace zelvane {
namespace {

namespace fs = std::filesystem;

// Real ones are about a kilobyte, records a few. Larger ones are not read at all.
constexpr std::size_t largestSessionFile = std::size_t{1} << 20;
constexpr std::size_t largestHookRecord = std::size_t{8} << 20;

constexpr Seconds rewriteWindow(2.0);
constexpr Seconds betweenLooks(0.025);
constexpr int furtherLooks = 4;

std::vector<std::string> jsonFilesOf(const std::string& folder) {
  std::vector<std::string> paths;
  std::error_code failed;
  for (auto entry = fs::directory_iterator(folder, failed); !failed && entry != fs::end(entry);
       entry.increment(failed)) {
    if (entry->path().native().ends_with(".json")) paths.push_back(entry->path().string());
  }
  std::sort(paths.begin(), paths.end());
  return paths;
}

bool changedJustNow(const std::string& path, Time now) {
  std::error_code failed;
  const auto written = fs::last_write_time(path, failed);
  if (failed) return false;
  const Time changed = std::chrono::file_clock::to_sys(written);
  return now - changed < rewriteWindow && changed - now < rewriteWindow;
}

}  // namespace

std::vector<ClaudeProc> readSessionFiles(const std::string& folder, Time now, const Pause& pause) {
  const auto paths = jsonFilesOf(folder);
  std::vector<std::optional<Json>> files(paths.size());
  std::vector<std::size_t> unread;
  for (std::size_t i = 0; i < paths.size(); ++i) {
    files[i] = readJSON(paths[i], largestSessionFile);
    if (!files[i] && changedJustNow(paths[i], now)) unread.push_back(i);
  }
  for (int look = 0; look < furtherLooks && !unread.empty(); ++look) {
    pause(betweenLooks);
    std::erase_if(unread, [&](std::size_t i) {
      files[i] = readJSON(paths[i], largestSessionFile);
      return files[i].has_value();
    });
  }
  std::vector<ClaudeProc> procs;
  for (const auto& file : files) {
    auto proc = file ? claudeProc(*file) : std::nullopt;
    if (proc) procs.push_back(std::move(*proc));
  }
  return procs;
}

std::optional<HookRecord> readHookRecord(const std::string& folder, const std::string& sessionId) {
  if (!isSafeFileName(sessionId)) return std::nullopt;
  const auto file = readJSON(folder + "/" + sessionId + ".json", largestHookRecord);
  if (!file) return std::nullopt;
  return hookRecord(*file);
}

}  // namespace zelvane
