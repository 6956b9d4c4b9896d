#include "tests/simulator/oracle.h"

#include <algorithm>

namespace zelvane::test {
namespace {

std::string textOf(const Json& record, const char* key) {
  const auto found = record.find(key);
  return found != record.end() && found->is_string() ? found->get<std::string>() : "";
}

std::optional<double> numberOf(const Json& record, const char* key) {
  const auto found = record.find(key);
  if (found == record.end() || !found->is_number()) return std::nullopt;
  return found->get<double>();
}

bool youngShell(const Json& record, double now) {
  const auto shells = record.find("bg_seen");
  if (shells == record.end() || !shells->is_object()) return false;
  return std::any_of(shells->begin(), shells->end(), [&](const Json& seen) {
    return seen.is_number() && now - seen.get<double>() < 3600;
  });
}

bool backgroundRuns(const std::string& status, const Json& record, double now) {
  const auto doneAt = numberOf(record, "done_at");
  // Beyond 64 bits it is no count.
  const double count = numberOf(record, "bg_agents").value_or(0);
  const bool agents = count >= 1 && count < 9.2e18;
  if (agents && (status == "shell" || (doneAt && now - *doneAt < 1800))) return true;
  return status == "shell" && youngShell(record, now);
}

/// The record as it would be had a hook told what the newer file says. One that is a minute ahead
/// of the clock is from before that was set back.
Json broughtUp(Json record, const FileTruth& file, double now) {
  const auto recordedAt = numberOf(record, "updated_at");
  if (recordedAt && *recordedAt >= file.updatedAt && *recordedAt <= now + 60) return record;
  const auto state = textOf(record, "state");
  const bool over = state == "waiting"   ? file.status != "waiting"
                    : state == "working" ? file.status != "waiting" && file.status != "busy"
                                         : false;
  if (!over) return record;
  record["state"] = file.status == "busy" ? "working" : "idle";
  record["updated_at"] = file.updatedAt;
  if (file.status != "busy") record.erase("working_since");
  return record;
}

}  // namespace

Expected expectedState(const FileTruth& file, const std::optional<Json>& record,
                       std::optional<double> lookedAt, bool inFront, double now) {
  const Json hook = broughtUp(record.value_or(Json::object()), file, now);
  const bool asks = textOf(hook, "state") == "waiting";
  if (asks) return {ZelvaneState::waiting, numberOf(hook, "updated_at")};
  if (file.status == "waiting") return {ZelvaneState::waiting, file.updatedAt};
  if (file.status == "busy") {
    return {ZelvaneState::working, numberOf(hook, "working_since").value_or(file.updatedAt)};
  }
  const auto doneAt = numberOf(hook, "done_at");
  if (backgroundRuns(file.status, hook, now)) {
    return {ZelvaneState::agents, doneAt.value_or(file.updatedAt)};
  }
  const bool unseen = textOf(hook, "state") == "done" && doneAt && *doneAt > lookedAt.value_or(0);
  if (unseen && !inFront) return {ZelvaneState::done, doneAt};
  return {ZelvaneState::idle, file.updatedAt, unseen};
}

std::optional<std::string> orderBroken(const ZelvaneSession& above, const ZelvaneSession& below,
                                       const std::vector<std::string>& pins) {
  const auto ongoing = [](const ZelvaneSession& row) {
    return row.state == ZelvaneState::waiting || row.state == ZelvaneState::working ||
           row.state == ZelvaneState::agents;
  };
  if (ongoing(above) != ongoing(below)) {
    return ongoing(above) ? std::nullopt
                          : std::optional<std::string>("an ongoing row below others");
  }
  const auto place = [&](const ZelvaneSession& row) {
    return std::find(pins.begin(), pins.end(), row.id) - pins.begin();
  };
  if (place(above) != place(below)) {
    return place(above) < place(below) ? std::nullopt : std::optional<std::string>("pins");
  }
  if (place(above) < static_cast<std::ptrdiff_t>(pins.size())) return std::nullopt;
  const auto rank = [](const ZelvaneSession& row) {
    const bool old = row.state == ZelvaneState::idle && !row.today;
    return static_cast<int>(row.state) * 2 + (old ? 1 : 0);
  };
  if (rank(above) != rank(below)) {
    return rank(above) < rank(below) ? std::nullopt : std::optional<std::string>("rank");
  }
  const auto since = [](const ZelvaneSession& row) { return row.since.value_or(distantPast); };
  return since(above) >= since(below) ? std::nullopt : std::optional<std::string>("time");
}

}  // namespace zelvane::test
