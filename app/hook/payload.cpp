#include "app/hook/payload.h"

#include <algorithm>
#include <array>

#include "core/unicode.h"

#include "app/hook/payload_filter.h"

namespace zelvane {
namespace {

// Sorted: looked up by bisection for every member of the payload.
constexpr std::array<std::string_view, 31> wanted = {
    "activeForm",
    "agentId",
    "agent_id",
    "backgroundTaskId",
    "background_tasks",
    "content",
    "description",
    "hook_event_name",
    "id",
    "message",
    "newTodos",
    "notification_type",
    "prompt",
    "question",
    "questions",
    "session_id",
    "source",
    "status",
    "statusChange",
    "subject",
    "task",
    "taskId",
    "task_id",
    "tasks",
    "to",
    "todos",
    "tool_input",
    "tool_name",
    "tool_response",
    "transcript_path",
    "type",
};
static_assert(std::is_sorted(wanted.begin(), wanted.end()));

// The tools whose calls say something about to-dos, background work or questions.
constexpr std::array<std::string_view, 11> telling = {
    "Agent",      "AskUserQuestion", "Bash",     "KillShell",  "Monitor",   "Task",
    "TaskCreate", "TaskList",        "TaskStop", "TaskUpdate", "TodoWrite",
};
static_assert(std::is_sorted(telling.begin(), telling.end()));

bool isWanted(std::string_view name) {
  return std::binary_search(wanted.begin(), wanted.end(), name);
}

/// Most commands do not stay in the background.
bool isForegroundCommand(const Json& payload) {
  const Json* response = get::dict(payload, "tool_response");
  return get::str(payload, "tool_name") == "Bash" &&
         !(response && response->contains("backgroundTaskId"));
}

/// Whether the payload so far already shows that it tells nothing.
bool tellsNothing(const PayloadFilter& filter) {
  const auto tool = filter.topLevel("tool_name");
  return !tool.empty() && !std::binary_search(telling.begin(), telling.end(), tool);
}

}  // namespace

std::optional<Json> readPayload(const PayloadSource& source) {
  PayloadFilter filter(isWanted);
  while (!filter.complete()) {
    const auto bytes = source();
    if (bytes.empty()) return std::nullopt;
    filter.feed(bytes);
    if (filter.failed() || tellsNothing(filter)) return std::nullopt;
  }
  auto payload = parseJson(filter.kept());
  // A single stray byte must not cost the end of a turn.
  if (!payload && !isUtf8(filter.kept())) payload = parseJson(repairedUtf8(filter.kept()));
  if (!payload || !payload->is_object() || isForegroundCommand(*payload)) return std::nullopt;
  return payload;
}

}  // namespace zelvane
