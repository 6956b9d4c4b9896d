#include "app/model/records/claude_proc.h"

#include "core/text.h"

#include "app/model/records/time_stamp.h"

namespace zelvane {
namespace {

/// Whether the key is missing or holds exactly the word.
bool isOrDefaultsTo(const Json& file, const std::string& key, const char* word) {
  const Json* value = get::any(file, key);
  return !value || *value == word;
}

}  // namespace

std::optional<ClaudeProc> claudeProc(const Json& file) {
  const auto pid = get::integral(file, "pid");
  const auto sessionId = get::str(file, "sessionId");
  if (!pid || *pid < 1 || *pid > INT32_MAX || !sessionId) return std::nullopt;
  // The id names files of ours and goes into commands: one that is no plain name is not Claude's.
  if (!isSafeFileName(*sessionId)) return std::nullopt;
  if (!isOrDefaultsTo(file, "kind", "interactive")) return std::nullopt;
  if (!isOrDefaultsTo(file, "entrypoint", "cli")) return std::nullopt;
  return ClaudeProc{static_cast<std::int32_t>(*pid), *sessionId, get::str(file, "cwd").value_or(""),
                    get::str(file, "status").value_or("idle"),
                    date(get::any(file, "updatedAt"), TimeUnit::milliseconds)};
}

}  // namespace zelvane
