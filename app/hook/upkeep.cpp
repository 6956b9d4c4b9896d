#include "app/hook/upkeep.h"

namespace zelvane {
namespace {

// A record may well have been written since the time was asked for.
constexpr Seconds surelyFuture(60);

}  // namespace

std::optional<std::string> stateByClient(std::string_view state, std::optional<Time> recordedAt,
                                         const ClientWord& word, Time now) {
  if (recordedAt && *recordedAt - now > surelyFuture) recordedAt = std::nullopt;
  if (!word.at || (recordedAt && *word.at <= *recordedAt)) return std::nullopt;
  const bool busy = word.status == "busy";
  const bool waiting = word.status == "waiting";
  // Answered, approved or dismissed.
  if (state == "waiting" && !waiting) return busy ? "working" : "idle";
  // Interrupted, or ended by an error: a turn that ends well says so through its hook.
  if (state == "working" && !waiting && !busy) return "idle";
  return std::nullopt;
}

bool keepUp(Json& record, const ClientWord& word, Time now) {
  const auto updated = get::num(record, "updated_at");
  const auto state =
      stateByClient(get::str(record, "state").value_or(""),
                    updated ? std::optional(timeAt(*updated)) : std::nullopt, word, now);
  if (!state) return false;
  record["state"] = *state;
  record["updated_at"] = secondsSince1970(*word.at);
  record.erase("reason");
  if (*state == "idle") record.erase("working_since");
  return true;
}

}  // namespace zelvane
