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
    const bool plain = !entry->is_symlink(failed) && entry->is_regular_file(failed);
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

}  // namespace

std::optional<SessionFiles::Content> SessionFiles::contentOf(const std::string& path) {
  const auto file = readJSON(path, largestSessionFile);
  return file ? std::optional(Content{claudeProc(*file)}) : std::nullopt;
}

std::vector<ClaudeProc> SessionFiles::read(Time now) {
  const auto paths = jsonFilesOf(folder_);
  std::vector<std::optional<Content>> found;
  std::vector<std::size_t> unread;
  for (const auto& path : paths) {
    found.push_back(known_.of(path, now, contentOf));
    if (!found.back() && changedJustNow(path, now)) unread.push_back(found.size() - 1);
  }
  for (int look = 0; look < furtherLooks && !unread.empty(); ++look) {
    pause_(betweenLooks);
    std::erase_if(unread, [&](std::size_t i) {
      found[i] = contentOf(paths[i]);
      return found[i].has_value();
    });
  }
  std::vector<ClaudeProc> procs;
  for (auto& content : found) {
    if (content && content->proc) procs.push_back(std::move(*content->proc));
  }
  return procs;
}

std::optional<HookRecord> HookRecords::read(const std::string& sessionId, Time now) {
  if (!isSafeFileName(sessionId)) return std::nullopt;
  return known_.of(folder_ + "/" + sessionId + ".json", now, [](const std::string& path) {
    const auto file = readJSON(path, largestHookRecord);
    return file ? std::optional(hookRecord(*file)) : std::nullopt;
  });
}

}  // namespace zelvane
