#include "app/hook/record_update.h"

#include "app/hook/background.h"
#include "app/hook/todos.h"

namespace zelvane {
namespace {

std::string text(const Json& object, const std::string& key) {
  return get::str(object, key).value_or("");
}

void wait(Json& record, const std::string& reason) {
  record["state"] = "waiting";
  record["reason"] = reason;
}

void sessionStart(Json& record, const Json& payload) {
  const auto source = text(payload, "source");
  // Happens in the middle of a turn, and the process stays the same.
  if (source == "compact") return;
  record["source"] = source;
  record["state"] = "idle";
  for (const char* key : {"reason", "working_since", "todos", "tasks"}) record.erase(key);
  forgetBackground(record);
}

void sessionEnd(Json& record) {
  record["state"] = "ended";
  for (const char* key : {"reason", "working_since", "todos", "tasks"}) record.erase(key);
  forgetBackground(record);
}

void userPrompt(Json& record, const Json& payload, Time now) {
  const auto prompt = text(payload, "prompt");
  const auto state = text(record, "state");
  const bool notification = isTaskNotification(prompt);
  if (notification) takeTaskNotification(record, prompt);
  if (notification && state == "waiting") return;  // a dialog is open in a turn that runs
  // A notice, or a prompt that is queued, may come while a turn runs: then it begins none. Nor does
  // a prompt right after Esc seem to, until somebody has kept the record up.
  if (state != "working" || !record.contains("working_since")) {
    record["working_since"] = secondsSince1970(now);
    forgetFinishedTodos(record);
  }
  if (!notification) record["prompt"] = prompt;
  record["state"] = "working";
  record.erase("reason");
}

/// A permission dialog, or another one in which Claude asks. "idle_prompt" only says that nothing
/// happens. Sent seconds after the dialog opened: it may be closed by now.
bool asks(const Json& payload) {
  const auto type = text(payload, "notification_type");
  if (!type.empty()) {
    return type == "permission_prompt" || type == "elicitation_dialog" ||
           type == "agent_needs_input";
  }
  return text(payload, "message").starts_with("Claude needs your permission");
}

void notification(Json& record, const Json& payload, const std::string& clientStatus) {
  if (!asks(payload)) return;
  const auto state = text(record, "state");
  if (state == "waiting") return;  // for a question, whose text says more
  const bool over = state == "done" || state == "ended";
  if (clientStatus.empty() ? over : clientStatus != "waiting") return;
  wait(record, "허락을 기다려요");
}

void question(Json& record, const Json& payload) {
  const Json* input = get::dict(payload, "tool_input");
  const Json* questions = input ? get::list(*input, "questions") : nullptr;
  const auto first = questions && !questions->empty() ? text((*questions)[0], "question") : "";
  wait(record, first.empty() ? "질문이 있어요" : "질문: " + first);
}

void toolDone(Json& record, const Json& payload, Time now) {
  if (payload.contains("agent_id")) return;  // an agent's to-dos are not the session's
  if (text(payload, "tool_name") == "AskUserQuestion" && text(record, "state") == "waiting") {
    record["state"] = "working";
    record.erase("reason");
  }
  followTodos(record, payload);
  followBackground(record, payload, now);
}

void stop(Json& record, const Json& payload, Time now) {
  record["state"] = "done";
  record["done_at"] = secondsSince1970(now);
  record.erase("reason");
  record.erase("working_since");
  takeBackground(record, payload, now);
}

}  // namespace

bool needsClientStatus(const Json& payload) {
  return text(payload, "hook_event_name") == "Notification" && asks(payload);
}

Json recordAfter(Json record, const Json& payload, const std::string& clientStatus, Time now) {
  const Json before = record;
  const auto event = text(payload, "hook_event_name");
  if (event == "SessionStart") sessionStart(record, payload);
  if (event == "SessionEnd") sessionEnd(record);
  if (event == "UserPromptSubmit") userPrompt(record, payload, now);
  if (event == "Notification") notification(record, payload, clientStatus);
  if (event == "PreToolUse" && text(payload, "tool_name") == "AskUserQuestion") {
    question(record, payload);
  }
  if (event == "PostToolUse") toolDone(record, payload, now);
  if (event == "Stop" && !payload.contains("agent_id")) stop(record, payload, now);
  if (record == before) return record;
  const auto transcript = text(payload, "transcript_path");
  if (!transcript.empty()) record["transcript_path"] = transcript;
  // What happens beside an open dialog does not change since when it is open.
  const bool waitsOn = text(before, "state") == "waiting" && text(record, "state") == "waiting" &&
                       text(before, "reason") == text(record, "reason");
  if (!waitsOn || !record.contains("updated_at")) record["updated_at"] = secondsSince1970(now);
  return record;
}

}  // namespace zelvane
