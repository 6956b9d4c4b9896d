#include "tests/simulator/people.h"

#include <algorithm>
#include <utility>

#include "tests/simulator/client.h"

namespace zelvane::test {
namespace {

constexpr std::size_t mostTabs = 16;
constexpr double hour = 3600;

}  // namespace

People::People(World& world, Column& column, NotesLedger& ledger, Checks& checks)
    : world_(world), column_(column), ledger_(ledger), checks_(checks) {
  every(5, 60, [this] { openTab(); });
  every(100, 400, [this] { resumeOld(); });
  every(15, 120, [this] { closeTab(); });
  every(400, 3000, [this] { closeWindow(); });
  every(60, 600, [this] { killOne(); });
  every(30, 200, [this] { otherProgram(); });
  every(10, 100, [this] { renameTab(); });
  every(5, 60, [this] { useColumn(); });
  every(10, 90, [this] { type(); });
  every(20, 200, [this] { typeByCommand(); });
  every(20, 300, [this] { reopen(); });
  every(60, 900, [this] { mishap(); });
}

void People::every(double least, double most, const std::function<void()>& deed) {
  world_.time.after(world_.dice.seconds(least, most), [this, least, most, deed] {
    if (busy_) deed();
    every(least, most, deed);
  });
}

void People::whenFree(const std::function<void()>& deed) {
  if (!world_.time.isNested()) return deed();
  column_.restorer().interrupt();
  world_.time.after(Seconds(1), [this, deed] { whenFree(deed); });
}

std::vector<Client*> People::alive() const {
  std::vector<Client*> found;
  for (const auto& client : world_.clients) {
    if (client->isAlive()) found.push_back(client.get());
  }
  return found;
}

void People::openTab() {
  world_.bury();
  if (alive().size() >= mostTabs || world_.machine.folders().empty()) return;
  const std::vector<std::string> folders(world_.machine.folders().begin(),
                                         world_.machine.folders().end());
  world_.clients.push_back(std::make_unique<Client>(world_, world_.machine.openTty(),
                                                    world_.dice.of(folders), world_.newSid(),
                                                    Client::Start::fresh));
}

/// Every client goes on at its own pace; asked of all of them by `live`.
void People::goOn(Client* client) {
  if (world_.dice.chance(busy_ ? 0.06 : 0.002)) client->act();
}

void People::resumeOld() {
  if (ended_.empty() || alive().size() >= mostTabs) return;
  world_.clients.push_back(std::make_unique<Client>(world_, world_.machine.openTty(),
                                                    "/home/me/project-1", world_.dice.of(ended_),
                                                    Client::Start::resume));
}

void People::closeTab() {
  const auto clients = alive();
  if (clients.empty()) return;
  Client& client = *world_.dice.of(clients);
  if (ended_.size() < 50) ended_.push_back(client.sid());
  client.end(Client::End::exit);
}

void People::closeWindow() {
  const auto clients = alive();
  const auto count = std::min(clients.size(), 2 + world_.dice.below(6));
  std::set<std::string> sids;
  for (std::size_t i = 0; i < count; ++i) sids.insert(clients[i]->sid());
  world_.journal.event("a window closes");
  for (std::size_t i = 0; i < count; ++i) {
    clients[i]->end(world_.dice.chance(0.3) ? Client::End::killed : Client::End::exit);
  }
  for (const auto& client : alive()) sids.erase(client->sid());
  checks_.windowClosed(std::move(sids));
}

void People::killOne() {
  const auto clients = alive();
  if (!clients.empty()) world_.dice.of(clients)->end(Client::End::killed);
}

/// Takes a process id, often one that a session had.
void People::otherProgram() {
  const auto pid = world_.machine.spawn(world_.dice.chance(0.7) ? world_.machine.openTty() : "");
  world_.time.after(world_.dice.seconds(5, 1200), [this, pid, boot = world_.machine.bootTime()] {
    if (boot == world_.machine.bootTime()) world_.endProcess(pid);
  });
}

void People::renameTab() {
  const auto clients = alive();
  if (clients.empty()) return;
  world_.tabTitles[world_.dice.of(clients)->tty()] = {"tab " + std::to_string(++texts_),
                                                      world_.time.uptime()};
}

void People::useColumn() {
  const auto clients = alive();
  const bool away = clients.empty() || world_.dice.chance(0.4);
  world_.front = away ? std::nullopt : std::optional(world_.dice.of(clients)->tty());
  if (!column_.isRunning()) return;
  auto& store = column_.store();
  const auto& rows = store.sessions();
  if (rows.empty()) return;
  const auto row = world_.dice.of(rows);
  switch (world_.dice.below(6)) {
    case 0:
      return store.togglePin(row);
    case 1:
      return column_.showOrHide();
    default:
      return column_.open(row);
  }
}

void People::type() {
  if (!column_.isRunning() || column_.store().sessions().empty()) return;
  auto& store = column_.store();
  const auto row = world_.dice.of(store.sessions());
  const bool away = world_.dice.chance(0.2);
  const auto text = away ? "" : "note " + std::to_string(++texts_) + " 메모";
  if (world_.dice.chance(0.5)) {
    ledger_.typeTitle(store.notes(), row.id, text);
  } else {
    ledger_.typeMemo(store.notes(), row.id, text);
  }
  store.refreshNow();
}

/// Often on the very notes that are being edited in the column.
void People::typeByCommand() {
  if (!column_.isRunning() || column_.store().sessions().empty()) return;
  const auto row = world_.dice.of(column_.store().sessions());
  if (world_.dice.chance(0.5)) {
    ledger_.typeTitle(column_.store().notes(), row.id, "title " + std::to_string(++texts_));
  }
  const auto text = world_.dice.chance(0.2) ? "" : "typed " + std::to_string(++texts_);
  ledger_.typeByCommand(row.id, world_.dice.chance(0.5) ? "title" : "memo", text);
}

void People::reopen() {
  if (!column_.isRunning()) return;
  auto& offers = column_.store().offers();
  if (column_.restorer().isRunning()) {
    if (world_.dice.chance(0.2)) column_.restorer().interrupt();
    return;
  }
  switch (world_.dice.below(5)) {
    case 0:
    case 1:
      return offers.restoreReboot();
    case 2:
    case 3:
      return offers.restoreRecent();
    default:
      checks_.dismissed();
      return world_.dice.chance(0.3) ? offers.dismissRestore() : offers.dismissRecent();
  }
}

void People::mishap() {
  switch (world_.dice.below(8)) {
    case 0:
      return fillDisk();
    case 1:
      return setClock();
    case 2:
      world_.journal.event("the machine sleeps");
      return world_.time.moveClock(world_.dice.seconds(60, 5 * hour));
    case 3:
      return strayFile();
    case 4:
      return spoilRecord();
    case 5:
    case 6:
      return whenFree([this] { restartColumn(); });
    default:
      return whenFree([this] { reboot(); });
  }
}

void People::fillDisk() {
  if (DiskSpace::isLimited()) return;
  world_.journal.event("the disk is full");
  DiskSpace::limit(world_.dice.chance(0.5) ? 0 : world_.dice.below(4000));
  world_.time.after(world_.dice.seconds(3, 120), [this] {
    world_.journal.event("the disk has room again");
    DiskSpace::unlimit();
    world_.diskTrouble = world_.time.uptime();
  });
}

/// Forth and, some time later, back; or the other way round.
void People::setClock() {
  const auto by = world_.dice.seconds(-2 * hour, 2 * hour);
  world_.journal.event("the clock is set");
  world_.time.moveClock(by);
  world_.time.after(world_.dice.seconds(1, 600), [this, by] {
    world_.journal.event("the clock is set right");
    world_.time.moveClock(-by);
  });
}

/// A file among the session files that is none, or none that a row may come from.
void People::strayFile() {
  const auto clients = alive();
  const auto pid = clients.empty() ? std::string("1") : std::to_string(clients.front()->pid());
  const auto with = [&](const std::string& sid, const std::string& more) {
    return R"({"pid":)" + pid + R"(,"sessionId":")" + sid + "\"" + more + "}";
  };
  const std::vector<std::string> contents = {
      "",
      "{",
      "null",
      "[1,2]",
      with("../../../etc/passwd", ""),
      with(".hidden", ""),
      with("", ""),
      with("a/b", ""),
      with("\\u0000", ""),
      with("\xff\xfe", ""),
      with(std::string(300, 'x'), ""),
      with("ok", R"(,"kind":"background")"),
      with("ok", R"(,"entrypoint":"sdk-cli")"),
      with("ok", R"(,"kind":7)"),
      with("ok", ",\"pad\":\"" + std::string(70'000, 'x') + "\""),
      R"({"pid":"12","sessionId":"ok"})",
      R"({"pid":12.5,"sessionId":"ok"})",
      R"({"pid":99999999999,"sessionId":"ok"})",
      R"({"pid":-1,"sessionId":"ok"})",
      std::string(5000, '['),
  };
  const auto path = world_.sessionFile("stray-" + std::to_string(++texts_) + ".json");
  world_.journal.event("a stray file");
  Machine::write(path, world_.dice.of(contents));
  folderChanged(world_.machine.claudeSessions());
  world_.time.after(world_.dice.seconds(5, 3000), [path] { Machine::remove(path); });
}

/// Somebody's finger in the hook records.
void People::spoilRecord() {
  const auto clients = alive();
  if (clients.empty()) return;
  Client& client = *world_.dice.of(clients);
  client.distrust();
  const std::vector<std::string> contents = {
      "",
      "{\"state\":",
      "[]",
      R"({"state":7,"updated_at":"now","bg_seen":[1],"todos":{"done":1}})",
      R"({"state":"done","done_at":1e300,"updated_at":-1e300,"bg_agents":1e30})",
      R"({"background":7,"bg_agents":3,"state":"waiting"})",
      "\xff\xff"};
  world_.journal.event("the record of " + client.sid() + " is spoilt");
  Machine::write(world_.recordFile(client.sid()), world_.dice.of(contents));
  world_.recordTouched(client.sid());
}

void People::restartColumn() {
  if (!column_.isRunning()) return;
  world_.dice.chance(0.5) ? column_.quit() : column_.kill();
  world_.time.after(world_.dice.seconds(0.2, 100), [this] {
    whenFree([this] {
      if (column_.isRunning()) return;
      column_.launch();
      checks_.launched(/*rebooted=*/false);
    });
  });
}

void People::reboot() {
  if (!column_.isRunning()) return;
  const bool announced = world_.dice.chance(0.5);
  world_.journal.event(announced ? "the machine shuts down" : "the power is cut");
  checks_.goesDown();
  if (announced) column_.store().setFrozen(true);
  const bool wasBusy = std::exchange(busy_, false);  // nobody does anything any more
  for (const auto& client : alive()) {
    client->end(announced && world_.dice.chance(0.7) ? Client::End::exit : Client::End::killed);
    if (announced) world_.time.advance(world_.dice.seconds(0, 2));
  }
  for (const auto& client : alive()) client->end(Client::End::killed);
  busy_ = wasBusy;
  announced&& world_.dice.chance(0.5) ? column_.quit() : column_.kill();
  world_.time.moveClock(world_.dice.seconds(20, 3 * hour));
  world_.machine.reboot();
  column_.restorer().reboot();
  world_.journal.event("the machine is up again");
  world_.time.after(world_.dice.seconds(3, 200), [this] {
    whenFree([this] {
      if (column_.isRunning()) return;
      column_.launch();
      checks_.launched(/*rebooted=*/true);
    });
  });
}

void People::live(double days) {
  column_.launch();
  checks_.launched(/*rebooted=*/false);
  // A day has a few busy hours, a few quiet ones, and a night.
  for (double lived = 0; lived < days; lived += 1) {
    const double share = std::min(1.0, days - lived);
    for (const bool busy : {true, false, true}) {
      busy_ = busy;
      for (double left = (busy ? 1.5 : 1.0) * hour * share; left > 0; left -= 1) {
        for (Client* client : alive()) goOn(client);
        world_.time.advance(Seconds(1));
        world_.latestClock = std::max(world_.latestClock, secondsSince1970(world_.time.wall()));
      }
    }
    world_.journal.event("night");
    world_.time.moveClock(Seconds(20 * hour * share));
  }
  if (column_.isRunning()) column_.quit();
  DiskSpace::unlimit();
  ledger_.check();
}

}  // namespace zelvane::test
