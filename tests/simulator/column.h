// The program under test on the simulated machine: the real store with everything behind it, whose
// sources look at the world. It can be quit, killed and started again.
#pragma once

#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "app/model/store/store.h"
#include "tests/simulator/notes_ledger.h"
#include "tests/simulator/oracle.h"
#include "tests/simulator/restorer.h"
#include "tests/simulator/world.h"

namespace zelvane::test {

/// The world as one pass met it.
struct View {
  /// One row that a pass may or must have.
  struct Row {
    FileTruth file;                        ///< when the pass ended, if it was still there
    std::optional<std::string> ttyBefore;  ///< of its process when the pass began
    std::optional<double> lookedAt;        ///< by the user, then; since 1970
    std::uint64_t recordChanges = 0;       ///< until then
    std::optional<std::string> tty;        ///< when it ended
    bool sure = false;                     ///< there all the time
    bool still = false;                    ///< and nothing of it changed meanwhile
    Expected expected;
    std::optional<double> truthSince;   ///< and since when
    std::optional<ZelvaneState> truth;  ///< what its client truly does, when that can be known
  };
  using Key = std::pair<std::int32_t, std::string>;  ///< process and session

  Time now;
  Seconds uptime{0};
  std::optional<std::string> front;
  std::vector<std::string> pins;
  std::map<Key, Row> rows;
};

class Column {
 public:
  Column(World& world, NotesLedger& ledger);
  ~Column();
  Column(const Column&) = delete;
  Column& operator=(const Column&) = delete;

  void launch();
  void quit();
  /// Ends without a word.
  void kill();
  bool isRunning() const { return store_ != nullptr; }
  ZelvaneStore& store() { return *store_; }
  Restorer& restorer() { return restorer_; }
  /// By uptime.
  Seconds launchedAt() const { return launchedAt_; }

  /// The user clicks on a row.
  void open(const ZelvaneSession& row);
  /// The column is covered, or seen again.
  void showOrHide();
  /// Since when it can be seen, by uptime; never, while it cannot.
  Seconds visibleSince() const { return store_->visible() ? visibleSince_ : Seconds(1e12); }
  /// Called after each pass, once its rows are published.
  std::function<void(const View&)> afterPass;

 private:
  ZelvaneStore::Options options();
  RefreshSources sources();
  void post(std::function<void()> task);
  void beginView(Time now);
  void endView();
  void endRow(View::Row& row, const FileTruth& file);
  void published();
  void forgetUnsavedLooks();

  World& world_;
  NotesLedger& ledger_;
  Restorer restorer_;
  std::shared_ptr<ZelvaneStore> store_;
  std::deque<std::function<void()>> mainTasks_;
  std::uint64_t life_ = 0;
  Seconds mainFree_{0};
  Seconds launchedAt_{0};
  Seconds visibleSince_{0};
  View view_;
  std::deque<View> unpublished_;
};

}  // namespace zelvane::test
