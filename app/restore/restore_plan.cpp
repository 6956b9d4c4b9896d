#include "app/restore/restore_plan.h"

#include <algorithm>

#include "core/localization.h"

namespace zelvane {
namespace {

constexpr std::size_t longestId = 128;

RestoreItem itemOf(const Json& json) {
  return {get::str(json, "sid").value_or(""), get::str(json, "cwd").value_or(""),
          get::str(json, "title").value_or(""), get::str(json, "terminal").value_or("")};
}

/// Why the item is not to be opened; nothing when it is.
std::optional<std::string> obstacle(const RestoreItem& item, double since,
                                    const RestoreFacts& facts) {
  if (!isSessionId(item.sid)) return L("대화 번호가 아니에요");
  if (facts.running.contains(item.sid)) return L("이미 돌고 있어요");
  const auto opened = facts.openedAt.find(item.sid);
  if (opened != facts.openedAt.end() && opened->second >= since) return L("이미 열었어요");
  if (!item.folder.starts_with('/') || item.folder.find('\0') != std::string::npos ||
      !facts.folderExists(item.folder)) {
    return L("폴더가 없어요");
  }
  return std::nullopt;
}

std::string quoted(const std::string& text) {
  std::string result = "'";
  for (const char c : text) result += c == '\'' ? "'\\''" : std::string(1, c);
  return result + "'";
}

}  // namespace

RestorePlan planRestore(const Json& snapshot, bool exact, const RestoreFacts& facts) {
  RestorePlan plan;
  const double savedAt = get::num(snapshot, "saved_at").value_or(0);
  const Json* items = get::list(snapshot, "items");
  if (!items) return plan;
  std::set<std::string> met;
  for (const auto& json : *items) {
    auto item = itemOf(json);
    if (!met.insert(item.sid).second) continue;
    const double since = exact ? get::num(json, "closed_at").value_or(savedAt) : savedAt;
    if (auto reason = obstacle(item, since, facts)) {
      plan.skipped.push_back({std::move(item), std::move(*reason)});
    } else {
      plan.open.push_back(std::move(item));
    }
  }
  return plan;
}

bool isSessionId(const std::string& text) {
  const auto isPlain = [](char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '-' ||
           c == '_';
  };
  return !text.empty() && text.size() <= longestId && text.front() != '-' &&
         std::all_of(text.begin(), text.end(), isPlain);
}

std::vector<std::string> resumeCommand(const std::string& shell, const std::string& sid) {
  return {shell, "-l", "-i", "-c", "claude --resume " + sid + "; exec " + quoted(shell)};
}

std::optional<std::string> resumedSession(const std::vector<std::string>& arguments) {
  const auto option = std::find(arguments.begin(), arguments.end(), "--resume");
  if (option == arguments.end() || option + 1 == arguments.end()) return std::nullopt;
  return *(option + 1);
}

}  // namespace zelvane
