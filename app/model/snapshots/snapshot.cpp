#include "app/model/snapshots/snapshot.h"

#include <algorithm>

namespace zelvane {
namespace {

constexpr Seconds kept(86'400);
constexpr Seconds freshEnough(10);
constexpr double quitLongBefore = 900;
constexpr double aliveAtTheEnd = 120;

std::string signatureOf(const std::vector<ZelvaneSession>& rows) {
  std::string text;
  for (const auto& row : rows) text += (text.empty() ? "" : "|") + row.id + row.title;
  return text;
}

double lastSeen(const Json& item, double otherwise) {
  return get::num(item, "last_seen").value_or(otherwise);
}

SnapshotItem itemOf(const Json& json) {
  auto text = json.dump(2, ' ', false, Json::error_handler_t::replace);
  for (auto end = text.find('\n'); end != text.npos; end = text.find('\n', end + 1)) {
    text.insert(end + 1, "    ");
  }
  return {lastSeen(json, 0), std::move(text)};
}

SnapshotItem itemOf(const ZelvaneSession& row, Time now) {
  Json json = {{"sid", row.id},
               {"cwd", row.cwd},
               {"title", row.title},
               {"busy", row.state == ZelvaneState::working},
               {"last_seen", secondsSince1970(now)}};
  if (!row.terminal.empty()) json["terminal"] = row.terminal;
  return itemOf(json);
}

std::string textOf(const std::map<std::string, SnapshotItem>& items, Time now) {
  std::vector<const SnapshotItem*> newestFirst;
  for (const auto& [id, item] : items) newestFirst.push_back(&item);
  std::stable_sort(newestFirst.begin(), newestFirst.end(), [](const auto* one, const auto* other) {
    return one->lastSeen > other->lastSeen;
  });
  std::string text = "{\n  \"items\": [";
  for (const auto* item : newestFirst) {
    text += (item == newestFirst.front() ? "\n    " : ",\n    ") + item->text;
  }
  text += newestFirst.empty() ? "]" : "\n  ]";
  return text + ",\n  \"saved_at\": " + Json(secondsSince1970(now)).dump() + ",\n  \"v\": 2\n}";
}

std::map<std::string, SnapshotItem> bySession(const Json& items) {
  std::map<std::string, SnapshotItem> found;
  for (const auto& item : items) {
    if (const auto id = get::str(item, "sid")) found[*id] = itemOf(item);
  }
  return found;
}

/// The items whose sessions lived until shortly before the end. One that was seen after the
/// snapshot was made ended before the clock was set back.
Json aliveLast(const Json& items, double savedAt, double now) {
  Json possible = Json::array();
  double newest = 0;
  for (const auto& item : items) {
    if (lastSeen(item, 0) > savedAt) continue;
    newest = std::max(newest, lastSeen(item, now));
    possible.push_back(item);
  }
  Json alive = Json::array();
  for (auto& item : possible) {
    if (lastSeen(item, now) >= newest - aliveAtTheEnd) alive.push_back(std::move(item));
  }
  return alive;
}

}  // namespace

std::optional<std::string> autosnapshot(const std::vector<ZelvaneSession>& rows,
                                        SnapshotMemory& memory, Time now) {
  for (const auto& row : rows) memory.items[row.id] = itemOf(row, now);
  std::erase_if(memory.items,
                [&](const auto& entry) { return now - timeAt(entry.second.lastSeen) >= kept; });
  auto signature = signatureOf(rows);
  const bool fresh = within(freshEnough, memory.writtenAt, now);
  if (signature == memory.signature && fresh) return std::nullopt;
  memory.signature = std::move(signature);
  memory.writtenAt = now;
  return textOf(memory.items, now);
}

std::optional<Json> quitMarked(std::optional<Json> snapshot, Time now) {
  if (snapshot) (*snapshot)["app_quit"] = secondsSince1970(now);
  return snapshot;
}

RebootFindings checkReboot(const std::optional<Json>& snapshot,
                           const std::optional<Json>& rebootSnapshot, Time bootTime, Time now) {
  if (!snapshot) return {};
  const auto savedAt = get::num(*snapshot, "saved_at");
  const Json* items = get::list(*snapshot, "items");
  if (!savedAt || !items) return {};
  const double booted = secondsSince1970(bootTime);
  if (*savedAt >= booted) return {.tracked = bySession(*items)};
  const auto quit = get::num(*snapshot, "app_quit");
  if ((quit && booted - *quit > quitLongBefore) || items->empty()) return {};
  const auto handled = rebootSnapshot ? get::num(*rebootSnapshot, "saved_at") : std::nullopt;
  if (handled && *handled >= *savedAt) return {};
  const double seconds = secondsSince1970(now);
  return {.rebootSnapshot =
              Json{{"saved_at", seconds}, {"items", aliveLast(*items, *savedAt, seconds)}}};
}

std::vector<Json> pendingItems(const std::optional<Json>& rebootSnapshot,
                               const std::set<std::string>& live,
                               const std::function<bool(const std::string&)>& folderExists) {
  const Json* items = rebootSnapshot ? get::list(*rebootSnapshot, "items") : nullptr;
  if (!items) return {};
  std::vector<Json> pending;
  for (const auto& item : *items) {
    const auto id = get::str(item, "sid");
    const auto folder = get::str(item, "cwd");
    if (id && folder && !live.contains(*id) && folderExists(*folder)) pending.push_back(item);
  }
  return pending;
}

}  // namespace zelvane
