// The rules that hold after every pass, each a function of its own. A broken one ends the life.
#pragma once

#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "tests/simulator/column.h"

namespace zelvane::test {

class Checks {
 public:
  Checks(World& world, Column& column, NotesLedger& ledger);

  /// To be told by whoever shapes the world.
  void windowClosed(std::set<std::string> sids);
  /// The machine goes down, now or after it closed everything.
  void goesDown();
  /// The column is about to end, by a quit or without a word.
  void ends(bool byQuit);
  /// The column was started, and has done nothing yet; after the machine when `rebooted`.
  void launched(bool rebooted);
  void dismissed() { dismissedAt_ = world_.time.uptime(); }
  std::uint64_t rowsSeen() const { return rowsSeen_; }

 private:
  using Rows = std::vector<ZelvaneSession>;

  void afterPass(const View& view);
  void rowsHaveProcesses(const View& view, const Rows& rows) const;
  void processesHaveOneRow(const View& view, const Rows& rows) const;
  void statesFollowTheirSources(const View& view, const Rows& rows) const;
  void statesAreTrue(const View& view, const Rows& rows) const;
  void rowsAreOrdered(const View& view, const Rows& rows) const;
  void charactersStay(const Rows& rows);
  void titlesAreFresh(const View& view, const Rows& rows) const;
  void notesAreKeptAndShown(const View& view, const Rows& rows);
  void notesFollowTheTab(const View& view);
  void snapshotHoldsAll(const View& view, const Rows& rows);
  void rebootIsOffered(const Rows& rows);
  void offersAreSound(const View& view, const Rows& rows);
  void closedTogetherAreOffered(const View& view, const Rows& rows);
  void memoryStaysSmall(const View& view) const;

  bool clockIsBehind(const View& view) const;
  bool diskWasFull(Seconds within) const;
  [[noreturn]] void broken(const std::string& rule, const std::string& what) const;

  World& world_;
  Column& column_;
  NotesLedger& ledger_;
  std::map<View::Key, std::int64_t> characters_;  ///< of the last rows
  std::map<std::string, double> seen_;            ///< when sessions were last shown, since 1970
  std::set<std::string> offered_;                 ///< of the last offer of closed conversations
  std::set<std::string> closedTogether_;          ///< by closing a window
  Seconds closedAt_{0};
  Seconds dismissedAt_{-1e9};
  std::set<std::string> openAtTheEnd_;  ///< when the column ended, or the machine went down
  std::optional<double> quitAt_;        ///< since 1970, when the column's last run was quit
  std::optional<Json> offerBefore_;     ///< the reboot's offer that lay there at the start
  bool rebooted_ = false;
  bool frozen_ = false;
  std::uint64_t typedChecked_ = 0;
  std::uint64_t rowsSeen_ = 0;
  std::size_t clearsChecked_ = 0;
};

}  // namespace zelvane::test
