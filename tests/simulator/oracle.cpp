#include "tests/simulator/oracle.h"

#include <algorithm>
#include <tuple>

namespace zelvane::test {
namespace {

std::string textOf(const Json& record, const char* key) {
  return get::str(record, key).value_or("");
}

bool youngShell(const Json& record, double now) {
  const Json* shells = get::dict(record, "bg_seen");
  return shells && std::any_of(shells->begin(), shells->end(), [&](const Json& seen) {
           return seen.is_number() && now - seen.get<double>() < 3600;
         });
}

bool backgroundRuns(const std::string& status, const Json& record, double now) {
  const auto doneAt = get::num(record, "done_at");
  // Beyond 64 bits it is no count.
  const double count = get::num(record, "bg_agents").value_or(0);
  const bool agents = count >= 1 && count < 9.2e18;
  if (agents && (status == "shell" || (doneAt && now - *doneAt < 1800))) return true;
  return status == "shell" && youngShell(record, now);
}

/// Whether the newer file says that the record's dialog or turn is over. A record that is a minute
/// ahead of the clock is from before that was set back.
bool isOver(const Json& record, const FileTruth& file, double now) {
  const auto recordedAt = get::num(record, "updated_at");
  if (recordedAt && *recordedAt >= file.updatedAt && *recordedAt <= now + 60) return false;
  const auto state = textOf(record, "state");
  if (file.status == "waiting") return false;
  return state == "waiting" || (state == "working" && file.status != "busy");
}

/// The record as it would be had a hook told so.
Json broughtUp(Json record, const FileTruth& file) {
  record["state"] = file.status == "busy" ? "working" : "idle";
  record["updated_at"] = file.updatedAt;
  if (file.status != "busy") record.erase("working_since");
  return record;
}

}  // namespace

Expected expectedState(const FileTruth& file, const Json& record, std::optional<double> lookedAt,
                       bool inFront, double now) {
  const bool over = isOver(record, file, now);
  const Json changed = over ? broughtUp(record, file) : Json();
  const Json& hook = over ? changed : record;
  const bool asks = textOf(hook, "state") == "waiting";
  if (asks) return {ZelvaneState::waiting, get::num(hook, "updated_at")};
  if (file.status == "waiting") return {ZelvaneState::waiting, file.updatedAt};
  if (file.status == "busy") {
    return {ZelvaneState::working, get::num(hook, "working_since").value_or(file.updatedAt)};
  }
  const auto doneAt = get::num(hook, "done_at");
  if (backgroundRuns(file.status, hook, now)) {
    return {ZelvaneState::agents, doneAt.value_or(file.updatedAt)};
  }
  const bool unseen = textOf(hook, "state") == "done" && doneAt && *doneAt > lookedAt.value_or(0);
  if (unseen && !inFront) return {ZelvaneState::done, doneAt};
  return {ZelvaneState::idle, file.updatedAt, unseen};
}

bool inOrder(const ZelvaneSession& above, const ZelvaneSession& below,
             const std::vector<std::string>& pins) {
  const auto place = [&](const ZelvaneSession& row) {
    const auto state = static_cast<int>(row.state);
    const bool ongoing = row.state <= ZelvaneState::agents;
    const auto pin = std::find(pins.begin(), pins.end(), row.id);
    if (pin != pins.end()) return std::tuple(!ongoing, pin, 0, Seconds(0));
    const bool old = row.state == ZelvaneState::idle && !row.today;
    return std::tuple(!ongoing, pin, state + (old ? 1 : 0),
                      distantPast - row.since.value_or(distantPast));
  };
  return place(above) <= place(below);
}

}  // namespace zelvane::test
