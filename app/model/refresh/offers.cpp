#include "app/model/refresh/offers.h"

#include <algorithm>
#include <set>

namespace zelvane {
namespace {

constexpr Seconds recentClosedLifetime(600);

std::string sid(const Json& item) { return get::str(item, "sid").value_or(""); }

bool hasRow(const std::vector<ZelvaneSession>& rows, const std::string& id) {
  return std::any_of(rows.begin(), rows.end(), [&](const auto& row) { return row.id == id; });
}

}  // namespace

std::vector<Json> recentClosedAfter(std::vector<Json> recentClosed,
                                    const std::optional<std::vector<Json>>& burst, bool dismissed,
                                    const std::vector<ZelvaneSession>& rows, Time now) {
  if (burst && !dismissed) {
    std::set<std::string> known;
    for (const auto& item : recentClosed) known.insert(sid(item));
    for (const auto& item : *burst) {
      if (known.insert(sid(item)).second) recentClosed.push_back(item);
    }
  }
  std::erase_if(recentClosed, [&](const Json& item) {
    const auto closedAt = get::num(item, "closed_at");
    return hasRow(rows, sid(item)) || !closedAt || now - timeAt(*closedAt) >= recentClosedLifetime;
  });
  return recentClosed;
}

std::optional<std::string> editingAfter(const std::optional<std::string>& editing,
                                        const std::vector<ZelvaneSession>& rows) {
  if (!editing) return std::nullopt;
  const auto colon = editing->find(':');
  const bool named = colon != std::string::npos && colon + 1 < editing->size();
  return hasRow(rows, named ? editing->substr(colon + 1) : *editing) ? editing : std::nullopt;
}

bool clockNeeded(bool visible, const std::vector<ZelvaneSession>& rows) {
  return visible && std::any_of(rows.begin(), rows.end(), [](const auto& row) {
           return row.state == ZelvaneState::working || row.state == ZelvaneState::agents;
         });
}

}  // namespace zelvane
