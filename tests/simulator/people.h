// The people at the machine and what befalls it: who opens tabs, works, types, closes windows,
// kills processes, sets the clock, fills the disk and pulls the plug. Everything follows from the
// dice.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "tests/simulator/checks.h"
#include "tests/simulator/column.h"
#include "tests/simulator/notes_ledger.h"
#include "tests/simulator/world.h"

namespace zelvane::test {

class People {
 public:
  People(World& world, Column& column, NotesLedger& ledger, Checks& checks);

  /// Lets them live for so many days: busy hours, quiet ones, and nights in which the machine
  /// sleeps.
  void live(double days);

 private:
  void every(double least, double most, const std::function<void()>& deed);
  /// Runs the deed when nothing that takes long is under way.
  void whenFree(const std::function<void()>& deed);
  std::vector<Client*> alive() const;
  Client* anyone();                        ///< who is alive; null when nobody is
  std::optional<ZelvaneSession> anyRow();  ///< of the column; nothing when it has none

  // At their sessions.
  void openTab();
  void goOn(Client* client);
  void resumeOld();
  void closeTab();
  void closeWindow();
  void killOne();
  void otherProgram();
  void renameTab();

  // At the column.
  void useColumn();
  void type();
  void typeByCommand();
  void reopen();

  // To the machine.
  void mishap();
  void fillDisk();
  void moveFolder();
  void setClock();
  void strayFile();
  void spoilRecord();
  void restartColumn();
  void quitUntilReboot();
  void reboot();
  void endColumn(bool byQuit);
  void launchAfter(double least, double most);

  World& world_;
  Column& column_;
  NotesLedger& ledger_;
  Checks& checks_;
  bool busy_ = true;       ///< hours in which people work
  bool rebooted_ = false;  ///< since the column last ran
  std::uint64_t texts_ = 0;
  std::vector<std::string> ended_;  ///< sessions that may be resumed
};

}  // namespace zelvane::test
