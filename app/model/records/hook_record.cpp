#include "app/model/records/hook_record.h"

#include "app/model/records/time_stamp.h"

namespace zelvane {
namespace {

std::string text(const Json& file, const std::string& key) {
  return get::str(file, key).value_or("");
}

std::optional<HookRecord::Todos> todos(const Json& file) {
  const Json* object = get::dict(file, "todos");
  if (!object) return std::nullopt;
  const auto done = get::integral(*object, "done");
  const auto total = get::integral(*object, "total");
  if (!done || !total) return std::nullopt;
  return HookRecord::Todos{*done, *total, text(*object, "current")};
}

std::vector<double> firstSeen(const Json& file) {
  std::vector<double> times;
  if (const Json* shells = get::dict(file, "bg_seen")) {
    for (const auto& seen : *shells) {
      if (seen.is_number()) times.push_back(seen.get<double>());
    }
  }
  return times;
}

}  // namespace

HookRecord hookRecord(const Json& file) {
  const auto time = [&](const char* key) { return date(get::any(file, key), TimeUnit::seconds); };
  HookRecord record;
  record.transcriptPath = get::str(file, "transcript_path");
  record.bgAgents = get::integral(file, "bg_agents").value_or(0);
  record.bgAgentDesc = text(file, "bg_agent_desc");
  record.bgShells = get::integral(file, "bg_shells").value_or(0);
  record.bgShellFirstSeen = firstSeen(file);
  record.bgShellDesc = text(file, "bg_shell_desc");
  record.state = text(file, "state");
  record.prompt = text(file, "prompt");
  record.reason = text(file, "reason");
  record.todos = todos(file);
  record.workingSince = time("working_since");
  record.doneAt = time("done_at");
  record.updatedAt = time("updated_at");
  record.source = get::str(file, "source");
  return record;
}

}  // namespace zelvane
