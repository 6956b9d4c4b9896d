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

Client* People::anyone() {
  const auto clients = alive();
  return clients.empty() ? nullptr : world_.dice.of(clients);
}

std::optional<ZelvaneSession> People::anyRow() {
  if (!column_.isRunning() || column_.store().sessions().empty()) return std::nullopt;
  return world_.dice.of(column_.store().sessions());
}

void People::openTab() {
  world_.bury();
  if (alive().size() >= mostTabs || world_.machine.folders().empty()) return;
  const std::vector<std::string> folders(world_.machine.folders().begin(),
                                         world_.machine.folders().end());
  const auto sid = world_.newSid();
  world_.clients.push_back(std::make_unique<Client>(
      world_, world_.machine.openTty(), world_.dice.of(folders), sid, Client::Start::fresh));
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
  Client* client = anyone();
  if (!client) return;
  if (ended_.size() < 50) ended_.push_back(client->sid());
  client->end(Client::End::exit);
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
  if (Client* client = anyone()) client->end(Client::End::killed);
}

/// Takes a process id, often one that a session had.
void People::otherProgram() {
  const auto pid = world_.machine.spawn(world_.dice.chance(0.7) ? world_.machine.openTty() : "");
  world_.time.after(world_.dice.seconds(5, 1200), [this, pid, boot = world_.machine.bootTime()] {
    if (boot == world_.machine.bootTime()) world_.endProcess(pid);
  });
}

void People::renameTab() {
  const Client* client = anyone();
  if (!client) return;
  world_.tabTitles[client->tty()] = {"tab " + std::to_string(++texts_), world_.time.uptime()};
}

void People::useColumn() {
  const auto clients = alive();
  const bool away = clients.empty() || world_.dice.chance(0.4);
  world_.front = away ? std::nullopt : std::optional(world_.dice.of(clients)->tty());
  const auto row = anyRow();
  if (!row) return;
  const auto choice = world_.dice.below(6);
  if (choice == 0) return column_.store().togglePin(*row);
  if (choice == 1) return column_.showOrHide();
  column_.open(*row);
}

void People::type() {
  const auto row = anyRow();
  if (!row) return;
  const bool away = world_.dice.chance(0.2);
  const auto text = away ? "" : "note " + std::to_string(++texts_) + " 메모";
  auto& notes = column_.store().notes();
  world_.dice.chance(0.5) ? ledger_.typeTitle(notes, row->id, text)
                          : ledger_.typeMemo(notes, row->id, text);
  column_.store().refreshNow();
}

/// Often on the very notes that are being edited in the column.
void People::typeByCommand() {
  const auto row = anyRow();
  if (!row) return;
  if (world_.dice.chance(0.5)) {
    ledger_.typeTitle(column_.store().notes(), row->id, "title " + std::to_string(++texts_));
  }
  const auto text = world_.dice.chance(0.2) ? "" : "typed " + std::to_string(++texts_);
  ledger_.typeByCommand(row->id, world_.dice.chance(0.5) ? "title" : "memo", text);
}

void People::reopen() {
  if (!column_.isRunning()) return;
  auto& offers = column_.store().offers();
  if (column_.restorer().isRunning()) {
    if (world_.dice.chance(0.2)) column_.restorer().interrupt();
    return;
  }
  const auto choice = world_.dice.below(5);
  if (choice < 2) return offers.restoreReboot();
  if (choice < 4) return offers.restoreRecent();
  checks_.dismissed();
  world_.dice.chance(0.3) ? offers.dismissRestore() : offers.dismissRecent();
}

void People::mishap() {
  switch (world_.dice.below(10)) {
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
    case 7:
      return whenFree([this] { quitUntilReboot(); });
    case 8:
      return moveFolder();
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

/// A folder that sessions worked in goes, or comes back.
void People::moveFolder() {
  const auto folder = "/home/me/project-" + std::to_string(world_.dice.below(12));
  world_.journal.event(folder + " moves");
  world_.machine.setFolder(folder, !world_.machine.folderExists(folder));
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
  Client* client = anyone();
  if (!client) return;
  client->distrust();
  const std::vector<std::string> contents = {
      "",
      "{\"state\":",
      "[]",
      R"({"state":7,"updated_at":"now","bg_seen":[1],"todos":{"done":1}})",
      R"({"state":"done","done_at":1e300,"updated_at":-1e300,"bg_agents":1e30})",
      R"({"background":7,"bg_agents":3,"state":"waiting"})",
      "\xff\xff"};
  world_.journal.event("the record of " + client->sid() + " is spoilt");
  Machine::write(world_.recordFile(client->sid()), world_.dice.of(contents));
  world_.recordTouched(client->sid());
}

void People::restartColumn() {
  if (!column_.isRunning()) return;
  endColumn(world_.dice.chance(0.5));
  launchAfter(0.2, 100);
}

/// It stays away for some minutes; then the machine is started anew.
void People::quitUntilReboot() {
  if (!column_.isRunning()) return;
  endColumn(/*byQuit=*/true);
  world_.time.after(world_.dice.seconds(30, 700), [this] { whenFree([this] { reboot(); }); });
}

void People::endColumn(bool byQuit) {
  checks_.ends(byQuit);
  byQuit ? column_.quit() : column_.kill();
}

void People::launchAfter(double least, double most) {
  world_.time.after(world_.dice.seconds(least, most), [this] {
    whenFree([this] {
      if (column_.isRunning()) return;
      column_.launch();
      checks_.launched(std::exchange(rebooted_, false));
    });
  });
}

void People::reboot() {
  const bool announced = world_.dice.chance(0.5);
  world_.journal.event(announced ? "the machine shuts down" : "the power is cut");
  checks_.goesDown();
  if (announced && column_.isRunning()) column_.store().setFrozen(true);
  const bool wasBusy = std::exchange(busy_, false);  // nobody does anything any more
  for (const auto& client : alive()) {
    client->end(announced && world_.dice.chance(0.7) ? Client::End::exit : Client::End::killed);
    if (announced) world_.time.advance(world_.dice.seconds(0, 2));
  }
  for (const auto& client : alive()) client->end(Client::End::killed);
  busy_ = wasBusy;
  const bool byQuit = announced && world_.dice.chance(0.5);
  if (column_.isRunning()) endColumn(byQuit);
  world_.time.moveClock(world_.dice.seconds(20, world_.dice.chance(0.5) ? 200 : 3 * hour));
  world_.machine.reboot();
  column_.restorer().reboot();
  rebooted_ = true;
  world_.journal.event("the machine is up again");
  launchAfter(3, 200);
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
  ledger_.check(ledger_.kept());
}

}  // namespace zelvane::test
