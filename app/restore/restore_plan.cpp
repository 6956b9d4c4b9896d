#include "app/restore/restore_plan.h"

#include <algorithm>

#include "core/localization.h"

namespace zelvane {
namespace {

constexpr std::size_t longestId = 128;
constexpr std::string_view resume = "claude --resume ";
// Without jobs of its own the shell goes on with nothing when the conversation is stopped by
// Ctrl-Z; and an interrupt is for the conversation alone.
constexpr const char* guardBegin = "set +m; trap : INT; ";
constexpr const char* guardEnd = "; trap - INT; ";

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

Time countsAsOpenedAt(const Json& snapshot, Time now) {
  double at = std::max(secondsSince1970(now), get::num(snapshot, "saved_at").value_or(0));
  const Json* items = get::list(snapshot, "items");
  for (const auto& item : items ? *items : Json::array()) {
    at = std::max(at, get::num(item, "closed_at").value_or(0));
  }
  return timeAt(at);
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
  const bool posix = !shell.ends_with("/fish");
  return {shell, "-l", "-i", "-c",
          (posix ? guardBegin : "") + std::string(resume) + sid + (posix ? guardEnd : "; ") +
              "exec " + quoted(shell)};
}

std::optional<std::string> resumedSession(const std::vector<std::string>& arguments) {
  constexpr std::string_view joined = "--resume=";
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    const auto& word = arguments[i];
    if (word.starts_with(joined)) return word.substr(joined.size());
    if ((word == "--resume" || word == "-r") && i + 1 < arguments.size()) return arguments[i + 1];
  }
  return std::nullopt;
}

std::optional<std::string> sessionOfShell(const std::vector<std::string>& arguments) {
  if (arguments.size() < 5 || arguments[3] != "-c") return std::nullopt;
  const auto& script = arguments[4];
  const auto begin = script.find(resume);
  if (begin == script.npos) return std::nullopt;
  const auto id = begin + resume.size();
  auto sid = script.substr(id, script.find(';', id) - id);
  return arguments == resumeCommand(arguments[0], sid) ? std::optional(std::move(sid))
                                                       : std::nullopt;
}

}  // namespace zelvane
