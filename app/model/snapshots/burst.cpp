#include "app/model/snapshots/burst.h"

#include <algorithm>

namespace zelvane {
namespace {

constexpr Seconds together(3);
constexpr Seconds remembered(10);
constexpr int fewest = 2;

std::map<std::string, Json> itemsOf(const std::vector<ZelvaneSession>& rows) {
  std::map<std::string, Json> items;
  for (const auto& row : rows) {
    Json& item = items[row.id];
    item = {{"sid", row.id}, {"cwd", row.cwd}, {"title", row.title}, {"pid", row.pid}};
    if (!row.terminal.empty()) item["terminal"] = row.terminal;
  }
  return items;
}

/// Everything that vanished, which is forgotten.
std::vector<Json> report(BurstMemory& memory, Time now) {
  std::vector<Json> closed;
  for (auto& [since, item] : memory.vanished) {
    item["closed_at"] = secondsSince1970(now);
    closed.push_back(std::move(item));
  }
  memory.vanished.clear();
  return closed;
}

}  // namespace

std::optional<std::vector<Json>> detectBurst(const std::vector<ZelvaneSession>& rows,
                                             BurstMemory& memory,
                                             const std::function<bool(std::int32_t pid)>& alive,
                                             Time now) {
  auto current = itemsOf(rows);
  for (auto& [id, item] : memory.live) {
    if (!current.contains(id) && !alive(item.at("pid").get<std::int32_t>())) {
      memory.vanished.emplace_back(now, std::move(item));
    }
  }
  memory.live = std::move(current);
  std::erase_if(memory.vanished,
                [&](const auto& entry) { return !within(remembered, entry.first, now); });
  if (memory.vanished.empty()) return std::nullopt;
  if (within(remembered, memory.reported, now)) return report(memory, now);
  const auto recent =
      std::count_if(memory.vanished.begin(), memory.vanished.end(),
                    [&](const auto& entry) { return within(together, entry.first, now); });
  if (recent < fewest) return std::nullopt;
  memory.reported = now;
  return report(memory, now);
}

}  // namespace zelvane
