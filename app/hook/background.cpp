#include "app/hook/background.h"

#include <algorithm>
#include <array>
#include <optional>
#include <string>

namespace zelvane {
namespace {

// What is known of each piece of work, by the client's id: "kind", "description", "seen".
constexpr const char* known = "background";

constexpr const char* agent = "agent";
constexpr const char* shell = "shell";

constexpr std::size_t mostWork = 500;

std::string text(const Json* object, const std::string& key) {
  return object ? get::str(*object, key).value_or("") : std::string();
}

bool hasEnded(const std::string& status) {
  constexpr std::array<std::string_view, 6> ends = {"completed", "failed",  "killed",
                                                    "stopped",   "errored", "cancelled"};
  return std::find(ends.begin(), ends.end(), status) != ends.end();
}

const char* kindOf(const std::string& type) {
  if (type == "shell" || type == "monitor") return shell;
  return type.find(agent) != std::string::npos ? agent : nullptr;
}

/// The record's public keys, from what is known of each piece.
void publish(Json& record) {
  Json seen = Json::object();
  std::string agents;
  std::string shells;
  std::int64_t agentCount = 0;
  if (const Json* work = get::dict(record, known)) {
    for (const auto& [id, piece] : work->items()) {
      const bool isAgent = text(&piece, "kind") == agent;
      auto& descriptions = isAgent ? agents : shells;
      const auto description = text(&piece, "description");
      if (!descriptions.empty() && !description.empty()) descriptions += ", ";
      descriptions += description;
      if (isAgent) {
        ++agentCount;
      } else {
        seen[id] = get::num(piece, "seen").value_or(0);
      }
    }
    if (work->empty()) record.erase(known);
  }
  record["bg_agents"] = agentCount;
  record["bg_agent_desc"] = agents;
  record["bg_shells"] = seen.size();
  record["bg_shell_desc"] = shells;
  record["bg_seen"] = std::move(seen);
}

void add(Json& record, const std::string& id, const char* kind, const std::string& description,
         Time now) {
  if (id.empty()) return;
  if (!get::dict(record, known)) record[known] = Json::object();
  Json& work = record[known];
  if (work.contains(id) || work.size() >= mostWork) return;
  work[id] = {{"kind", kind}, {"description", description}, {"seen", secondsSince1970(now)}};
}

void remove(Json& record, const std::string& id) {
  if (get::dict(record, known)) record[known].erase(id);
}

/// The text between two marks; empty when one of them is missing.
std::string between(std::string_view whole, std::string_view from, std::string_view to) {
  const auto start = whole.find(from);
  if (start == std::string_view::npos) return {};
  const auto rest = whole.substr(start + from.size());
  const auto end = rest.find(to);
  return end == std::string_view::npos ? std::string() : std::string(rest.substr(0, end));
}

}  // namespace

void takeBackground(Json& record, const Json& payload, Time now) {
  const Json* tasks = get::list(payload, "background_tasks");
  if (!tasks) return;
  const Json* before = get::dict(record, known);
  Json work = Json::object();
  for (const auto& task : *tasks) {
    const auto id = text(&task, "id");
    const char* kind = kindOf(text(&task, "type"));
    if (id.empty() || !kind || hasEnded(text(&task, "status"))) continue;
    const Json* piece = before ? get::dict(*before, id) : nullptr;
    const auto seen = piece ? get::num(*piece, "seen") : std::nullopt;
    work[id] = {{"kind", kind},
                {"description", text(&task, "description")},
                {"seen", seen.value_or(secondsSince1970(now))}};
  }
  record[known] = std::move(work);
  publish(record);
}

void followBackground(Json& record, const Json& payload, Time now) {
  const auto tool = get::str(payload, "tool_name").value_or("");
  const Json* input = get::dict(payload, "tool_input");
  const Json* response = get::dict(payload, "tool_response");
  const Json before = record.value(known, Json());
  if (tool == "Bash") {
    add(record, text(response, "backgroundTaskId"), shell, text(input, "description"), now);
  } else if (tool == "Monitor") {
    add(record, text(response, "taskId"), shell, text(input, "description"), now);
  } else if (tool == "Agent" || tool == "Task") {
    const bool launched = text(response, "status") == "async_launched";
    if (launched) add(record, text(response, "agentId"), agent, text(response, "description"), now);
  } else if (tool == "TaskStop" || tool == "KillShell") {
    remove(record, text(response, "task_id"));
  }
  if (record.value(known, Json()) != before) publish(record);
}

bool isTaskNotification(std::string_view prompt) {
  return prompt.starts_with("<task-notification>");
}

void takeTaskNotification(Json& record, std::string_view prompt) {
  if (!hasEnded(between(prompt, "<status>", "</status>"))) return;
  const auto id = between(prompt, "<task-id>", "</task-id>");
  const Json* work = get::dict(record, known);
  if (!work || !work->contains(id)) return;
  remove(record, id);
  publish(record);
}

void forgetBackground(Json& record) {
  for (const char* key :
       {known, "bg_agents", "bg_agent_desc", "bg_shells", "bg_shell_desc", "bg_seen"}) {
    record.erase(key);
  }
}

}  // namespace zelvane
