#include "app/model/records/session_files.h"

#include <algorithm>
#include <filesystem>

#include "core/text.h"

namespace zelvane {
namespace {

namespace fs = std::filesystem;

// Real ones are about a kilobyte, records a few. Larger ones are not read at all.
constexpr std::size_t largestSessionFile = std::size_t{64} << 10;
constexpr std::size_t largestHookRecord = std::size_t{8} << 20;

constexpr Seconds rewriteWindow(2.0);
constexpr Seconds betweenLooks(0.025);
constexpr int furtherLooks = 4;

std::vector<std::string> jsonFilesOf(const std::string& folder) {
  std::vector<std::string> paths;
  std::error_code failed;
  for (auto entry = fs::directory_iterator(folder, failed); !failed && entry != fs::end(entry);
       entry.increment(failed)) {
    // A link is none of the client's, and could lead to one of its secrets.
    const bool plain = fs::is_regular_file(entry->symlink_status(failed));
    if (plain && entry->path().native().ends_with(".json")) paths.push_back(entry->path().string());
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

/// One session file: what it says, and whether it could be read at all.
struct Reading {
  bool whole = false;
  std::optional<ClaudeProc> proc;
};

Reading readSessionFile(const std::string& path) {
  const auto file = readJSON(path, largestSessionFile);
  return {file.has_value(), file ? claudeProc(*file) : std::nullopt};
}

}  // namespace

std::vector<ClaudeProc> readSessionFiles(const std::string& folder, Time now, const Pause& pause) {
  const auto paths = jsonFilesOf(folder);
  std::vector<Reading> readings;
  std::vector<std::size_t> unread;
  for (const auto& path : paths) {
    readings.push_back(readSessionFile(path));
    if (!readings.back().whole && changedJustNow(path, now)) unread.push_back(readings.size() - 1);
  }
  for (int look = 0; look < furtherLooks && !unread.empty(); ++look) {
    pause(betweenLooks);
    std::erase_if(unread, [&](std::size_t i) {
      readings[i] = readSessionFile(paths[i]);
      return readings[i].whole;
    });
  }
  std::vector<ClaudeProc> procs;
  for (auto& reading : readings) {
    if (reading.proc) procs.push_back(std::move(*reading.proc));
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
