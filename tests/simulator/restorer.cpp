#include "tests/simulator/restorer.h"

#include "app/model/snapshots/restore_outcome.h"
#include "app/restore/restore_files.h"
#include "app/restore/restore_run.h"
#include "tests/simulator/client.h"

namespace zelvane::test {
namespace {

struct Interrupted {};

}  // namespace

std::set<std::string> Restorer::runningSessions() const {
  std::set<std::string> ids;
  for (const auto& client : world_.clients) {
    if (client->isAlive()) ids.insert(client->sid());
  }
  return ids;
}

/// A tab opens at once, and its conversation comes up soon, late or never.
TerminalResult Restorer::open(const RestoreItem& item) {
  if (world_.isRunning(item.sid) || starting_.contains(item.sid)) {
    world_.journal.broken("no conversation is opened twice", item.sid + " runs already");
  }
  if (remembered_.contains({item.sid, offered_[item.sid]})) {
    world_.journal.broken("no conversation is opened twice", item.sid + " was opened before");
  }
  Dice& dice = world_.dice;
  if (dice.chance(0.1)) return {false, "no terminal"};
  world_.journal.event("tab opens for " + item.sid);
  starting_.insert(item.sid);
  const bool never = dice.chance(0.1);
  world_.time.after(dice.seconds(0.5, dice.chance(0.1) ? 14 : 5), [this, item, never] {
    if (starting_.erase(item.sid) == 0 || never) return;
    ++opened_;
    world_.clients.push_back(std::make_unique<Client>(world_, world_.machine.openTty(), item.folder,
                                                      item.sid, Client::Start::resume));
  });
  return {true, ""};
}

/// What a full disk had no room to note may be opened again.
void Restorer::noted(const OpenedRecord& record, const std::string& sid) {
  const auto openedAt = record.openedAt();
  const auto found = openedAt.find(sid);
  if (found != openedAt.end() && found->second >= offered_[sid]) {
    remembered_.insert({sid, offered_[sid]});
  } else if (!DiskSpace::isLimited()) {
    world_.journal.broken("what was opened is noted", sid);
  }
}

void Restorer::pause(Seconds seconds, const std::atomic<bool>& cancelled) {
  world_.time.advance(seconds);
  if (interrupted_ || cancelled) throw Interrupted();
}

std::string Restorer::run(const std::string& snapshot, bool exact,
                          const std::atomic<bool>& cancelled) {
  std::string output;
  const auto say = [&](const std::string& line) { output += line + "\n"; };
  const OpenedRecord record(world_.machine.dataDir() + "/restored.json");
  const auto both = [this] {
    auto ids = runningSessions();
    ids.insert(starting_.begin(), starting_.end());
    return ids;
  };
  const auto folderExists = [this](const std::string& path) {
    return world_.machine.folderExists(path);
  };
  const auto file = readJSON(snapshot).value_or(Json::object());
  for (const auto& item : file.value("items", Json::array())) {
    const double saved = file.value("saved_at", 0.0);
    offered_[item.value("sid", "")] = exact ? item.value("closed_at", saved) : saved;
  }
  const auto plan = planRestore(file, exact, {both(), record.openedAt(), folderExists});
  if (plan.open.empty()) return std::string(nothingToRestore) + "\n";
  world_.journal.event("restore of " + std::to_string(plan.open.size()));
  running_ = true;
  interrupted_ = false;
  try {
    (void)runRestore(plan, {.running = [this] { return runningSessions(); },
                            .starting = [this] { return starting_; },
                            .open = [this](const RestoreItem& item) { return open(item); },
                            .remember =
                                [&](const std::string& sid) {
                                  record.add(sid, countsAsOpenedAt(file, world_.time.wall()));
                                  noted(record, sid);
                                },
                            .say = say,
                            .pause = [&](Seconds seconds) { pause(seconds, cancelled); },
                            .clock = [this] { return world_.time.wall(); }});
  } catch (const Interrupted&) {
    world_.journal.event("restore is interrupted");
  }
  running_ = false;
  return output;
}

}  // namespace zelvane::test
