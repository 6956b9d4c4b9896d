// The rules about what can be reopened: snapshots, reboots, conversations that were closed
// together.
#include <cmath>
#include <utility>

#include "tests/simulator/checks.h"
#include "tests/simulator/client.h"

namespace zelvane::test {
namespace {

constexpr double day = 86'400;
constexpr double stale = 25;  ///< two passes and what they take
constexpr double quitLongBefore = 900;

std::set<std::string> idsOf(const Json& items) {
  std::set<std::string> ids;
  for (const auto& item : items) ids.insert(item.value("sid", ""));
  return ids;
}

std::optional<Json> fileIn(const World& world, const char* name) {
  return readJSON(world.machine.dataDir() + name);
}

}  // namespace

void Checks::windowClosed(std::set<std::string> sids) {
  closedTogether_ = std::move(sids);
  std::erase_if(closedTogether_, [&](const auto& sid) { return !world_.shown.contains(sid); });
  closedAt_ = world_.time.uptime();
}

void Checks::goesDown() {
  if (column_.isRunning()) ends(/*byQuit=*/false);
  frozen_ = true;
}

void Checks::ends(bool byQuit) {
  if (frozen_) return;
  // What had no room was not noted: neither what was open nor the quit.
  const bool noted = !diskWasFull(Seconds(60));
  openAtTheEnd_ = noted ? world_.shown : std::set<std::string>();
  const double now = secondsSince1970(world_.time.wall());
  quitAt_ = noted && byQuit ? std::optional(now) : std::nullopt;
}

void Checks::launched(bool rebooted) {
  frozen_ = false;
  // Where the clock was set, the machine may seem to have been started since the last save, or not.
  const double savedAt =
      fileIn(world_, "/autosnap.json").value_or(Json::object()).value("saved_at", 0.0);
  const bool seemsRebooted = savedAt < secondsSince1970(world_.machine.bootTime());
  rebooted_ = rebooted && seemsRebooted;
  offerBefore_ = fileIn(world_, "/rebootsnap.json");
  if (rebooted || seemsRebooted || diskWasFull(Seconds(60))) seen_.clear();
  world_.shown.clear();
  offered_.clear();
  characters_.clear();
  closedTogether_.clear();
}

void Checks::snapshotHoldsAll(const View& view, const Rows& rows) {
  const double now = secondsSince1970(view.now);
  for (const auto& row : rows) seen_[row.id] = now;
  std::erase_if(seen_, [&](const auto& entry) { return now - entry.second > day - stale; });
  if (frozen_ || diskWasFull(Seconds(30)) || world_.journal.steps() % 10 != 0) return;
  const auto file = fileIn(world_, "/autosnap.json");
  if (!file) broken("there is a snapshot", "none that can be read");
  const double savedAt = file->value("saved_at", 0.0);
  if (std::abs(savedAt - now) > stale) {
    broken("the snapshot is of now", std::to_string(savedAt) + " is not " + std::to_string(now));
  }
  std::map<std::string, double> items;
  for (const auto& item : (*file)["items"]) items[item["sid"]] = item["last_seen"];
  for (const auto& [sid, at] : seen_) {
    if (!items.contains(sid)) broken("the snapshot holds what was open within a day", sid);
    const bool open = at == now;
    if (open && std::abs(items[sid] - savedAt) > 1e-3) {
      broken("the snapshot knows what is open", sid);
    }
  }
  for (const auto& [sid, at] : items) {
    if (now - at > day + stale) broken("the snapshot forgets after a day", sid);
  }
}

/// After the first pass since the machine came back. Who quit the column long before the machine
/// went down is offered nothing new.
void Checks::rebootIsOffered(const Rows& rows) {
  if (!std::exchange(rebooted_, false) || diskWasFull(Seconds(60))) return;
  const auto file = fileIn(world_, "/rebootsnap.json");
  if (quitAt_ && secondsSince1970(world_.machine.bootTime()) - *quitAt_ > quitLongBefore) {
    if (file != offerBefore_) broken("nothing is offered after a quit long before a reboot", "");
    openAtTheEnd_.clear();
  }
  const auto items = file.value_or(Json::object()).value("items", Json::array());
  const auto saved = idsOf(items);
  const auto offered = idsOf(column_.store().offers().pendingRestore());
  std::set<std::string> running;
  for (const auto& row : rows) running.insert(row.id);
  for (const auto& sid : openAtTheEnd_) {
    if (!saved.contains(sid)) broken("what was open before a reboot is offered", sid);
  }
  for (const auto& item : items) {
    const auto sid = item.value("sid", "");
    const bool possible =
        world_.machine.folderExists(item.value("cwd", "")) && !running.contains(sid);
    if (possible != offered.contains(sid)) {
      broken("what was open before a reboot is offered", sid + (possible ? " is not" : " is"));
    }
  }
}

void Checks::closedTogetherAreOffered(const View& view, const Rows& rows) {
  if (closedTogether_.empty() || view.uptime <= closedAt_) return;
  const auto closed = std::exchange(closedTogether_, {});
  if (closed.size() < 2 || view.uptime - dismissedAt_ < Seconds(stale)) return;
  auto there = idsOf(column_.store().offers().recentClosed());
  for (const auto& row : rows) there.insert(row.id);
  for (const auto& sid : closed) {
    if (!there.contains(sid)) broken("what was closed together is offered", sid);
  }
}

void Checks::offersAreSound(const View& view, const Rows& rows) {
  const auto& offers = column_.store().offers();
  const auto ids = idsOf(offers.recentClosed());
  if (ids.size() != offers.recentClosed().size()) broken("an offer names each once", "");
  for (const auto& row : rows) {
    if (ids.contains(row.id)) broken("nothing that runs is offered", row.id);
  }
  for (const auto& sid : ids) {
    const auto ended = world_.endedAt.find(sid);
    const bool lately =
        ended != world_.endedAt.end() && view.uptime - ended->second < Seconds(stale);
    if (!offered_.contains(sid) && !lately) broken("only what was just closed is offered", sid);
  }
  offered_ = ids;
}

}  // namespace zelvane::test
