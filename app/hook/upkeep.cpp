#include "app/hook/upkeep.h"

namespace zelvane {

std::optional<std::string> stateByClient(std::string_view state, std::optional<Time> recordedAt,
                                         const ClientWord& word) {
  if (!word.at || (recordedAt && *word.at <= *recordedAt)) return std::nullopt;
  const bool busy = word.status == "busy";
  const bool waiting = word.status == "waiting";
  // Answered, approved or dismissed.
  if (state == "waiting" && !waiting) return busy ? "working" : "idle";
  // Interrupted, or ended by an error: a turn that ends well says so through its hook.
  if (state == "working" && !waiting && !busy) return "idle";
  return std::nullopt;
}

bool keepUp(Json& record, const ClientWord& word) {
  const auto updated = get::num(record, "updated_at");
  const auto state = stateByClient(get::str(record, "state").value_or(""),
                                   updated ? std::optional(timeAt(*updated)) : std::nullopt, word);
  if (!state) return false;
  record["state"] = *state;
  record["updated_at"] = secondsSince1970(*word.at);
  record.erase("reason");
  if (*state == "idle") record.erase("working_since");
  return true;
}

}  // namespace zelvane
