#include "tests/simulator/checks.h"

#include <algorithm>
#include <cmath>

#include "tests/simulator/client.h"

namespace zelvane::test {
namespace {

constexpr double betweenPasses = 11;  ///< at most, with nothing in between

std::string name(const View::Key& key) { return key.second + " of " + std::to_string(key.first); }

View::Key keyOf(const ZelvaneSession& row) { return {row.pid, row.id}; }

std::string stateName(ZelvaneState state) {
  const char* names[] = {"waiting", "working", "agents", "done", "idle"};
  return names[static_cast<std::size_t>(state)];
}

}  // namespace

Checks::Checks(World& world, Column& column, NotesLedger& ledger)
    : world_(world), column_(column), ledger_(ledger) {
  column.afterPass = [this](const View& view) { afterPass(view); };
}

void Checks::broken(const std::string& rule, const std::string& what) const {
  world_.journal.broken(rule, what);
}

bool Checks::clockIsBehind(const View& view) const {
  return secondsSince1970(view.now) < world_.latestClock - 1;
}

bool Checks::diskWasFull(Seconds within) const {
  return DiskSpace::isLimited() || world_.time.uptime() - world_.diskTrouble < within;
}

void Checks::afterPass(const View& view) {
  const auto& rows = column_.store().sessions();
  std::string digest;
  for (const auto& row : rows) {
    digest += row.id.substr(0, 4) + stateName(row.state).substr(0, 2) + "(" + row.title + ") ";
  }
  world_.journal.step(digest);
  rowsSeen_ += rows.size();
  rowsHaveProcesses(view, rows);
  processesHaveOneRow(view, rows);
  statesFollowTheirSources(view, rows);
  statesAreTrue(view, rows);
  rowsAreOrdered(view, rows);
  charactersStay(rows);
  titlesAreFresh(view, rows);
  notesAreKeptAndShown(view, rows);
  notesFollowTheTab(view);
  snapshotHoldsAll(view, rows);
  rebootIsOffered(rows);
  closedTogetherAreOffered(view, rows);
  offersAreSound(view, rows);
  memoryStaysSmall(view);
  world_.shown.clear();
  for (const auto& row : rows) world_.shown.insert(row.id);
}

void Checks::rowsHaveProcesses(const View& view, const Rows& rows) const {
  for (const auto& row : rows) {
    const auto found = view.rows.find(keyOf(row));
    const bool right = found != view.rows.end() && row.tty &&
                       (row.tty == found->second.tty || row.tty == found->second.ttyBefore);
    if (!right) broken("every row has its process and terminal", name(keyOf(row)));
  }
}

void Checks::processesHaveOneRow(const View& view, const Rows& rows) const {
  std::set<View::Key> shown;
  for (const auto& row : rows) {
    if (!shown.insert(keyOf(row)).second) broken("no row is there twice", name(keyOf(row)));
  }
  for (const auto& [key, row] : view.rows) {
    if (row.sure && !shown.contains(key)) broken("every session has its row", name(key));
  }
}

void Checks::statesFollowTheirSources(const View& view, const Rows& rows) const {
  for (const auto& row : rows) {
    const auto& seen = view.rows.at(keyOf(row));
    if (!seen.still) continue;
    const auto since = row.since ? std::optional(secondsSince1970(*row.since)) : std::nullopt;
    const bool sameTime = since.has_value() == seen.expected.since.has_value() &&
                          (!since || std::abs(*since - *seen.expected.since) < 1e-3);
    if (row.state == seen.expected.state && sameTime) continue;
    broken("a state is what the newest of its sources says",
           name(keyOf(row)) + " is " + stateName(row.state) + " since " +
               std::to_string(since.value_or(0)) + ", not " + stateName(seen.expected.state) +
               " since " + std::to_string(seen.expected.since.value_or(0)) +
               "; file: " + seen.file.status + " at " + std::to_string(seen.file.updatedAt) +
               "; record: " + world_.record(row.id).dump());
  }
}

/// Of sessions whose hooks all ran, whatever the files say. A clock that was set back makes them
/// tell times of another age.
void Checks::statesAreTrue(const View& view, const Rows& rows) const {
  if (clockIsBehind(view)) return;
  for (const auto& row : rows) {
    const auto& seen = view.rows.at(keyOf(row));
    if (!seen.truth) continue;
    if (row.state != *seen.truth) {
      broken("a row shows what its session truly does",
             name(keyOf(row)) + " shows " + stateName(row.state) + " but is " +
                 stateName(*seen.truth) + "; record: " + world_.record(row.id).dump());
    }
    const bool timed = row.state == ZelvaneState::working || row.state == ZelvaneState::done;
    if (!timed || !seen.truthSince) continue;
    const double since = secondsSince1970(*row.since);
    if (std::abs(since - *seen.truthSince) > 0.5) {
      broken("a row shows since when its session truly does it",
             name(keyOf(row)) + ": " + std::to_string(since) + " is not " +
                 std::to_string(*seen.truthSince));
    }
  }
}

void Checks::rowsAreOrdered(const View& view, const Rows& rows) const {
  for (std::size_t i = 1; i < rows.size(); ++i) {
    if (inOrder(rows[i - 1], rows[i], view.pins)) continue;
    broken("rows are in order", rows[i - 1].id + ", " + rows[i].id);
  }
}

/// A session that goes on keeps its character; one that took another's place may still change it.
void Checks::charactersStay(const Rows& rows) {
  std::map<View::Key, std::int64_t> characters;
  for (const auto& row : rows) {
    const auto before = characters_.find(keyOf(row));
    const bool pending = column_.store().memory().pendingCarry.contains(row.id);
    if (before != characters_.end() && before->second != row.friendIndex) {
      broken("a session keeps its character", name(keyOf(row)));
    }
    if (!pending) characters[keyOf(row)] = row.friendIndex;
  }
  characters_ = std::move(characters);
}

void Checks::titlesAreFresh(const View& view, const Rows& rows) const {
  constexpr Seconds longEnough(60 + 2 * betweenPasses);
  if (view.uptime - column_.visibleSince() < longEnough) return;
  for (const auto& row : rows) {
    const auto title = world_.tabTitles.find(row.tty.value_or(""));
    if (title == world_.tabTitles.end() || view.uptime - title->second.since < longEnough) continue;
    if (row.claudeTitle != title->second.text) {
      broken("a title is no older than its tab's",
             row.claudeTitle + " is not " + title->second.text);
    }
  }
}

void Checks::notesAreKeptAndShown(const View& view, const Rows& rows) {
  if (world_.journal.steps() % 50 == 0) (void)ledger_.kept();
  constexpr Seconds saved(2);
  const bool quiet = view.uptime - ledger_.lastTyped() > saved && !diskWasFull(Seconds(20)) &&
                     (world_.clears.empty() || view.uptime - world_.clears.back().at > Seconds(20));
  if (!quiet || typedChecked_ == ledger_.typed()) return;
  typedChecked_ = ledger_.typed();
  const auto kept = ledger_.kept();
  ledger_.check(kept);
  for (const auto& row : rows) {
    const auto entry = kept.value(row.id, Json::object());
    const bool sameMemo = row.memo.value_or("") == entry.value("memo", "");
    const bool sameTitle =
        row.renamed ? row.title == entry.value("title", "") : !entry.contains("title");
    if (!sameMemo || !sameTitle) broken("rows show the notes that are kept", row.id + entry.dump());
  }
}

/// What stood at a tab's old conversation stands at the new one.
void Checks::notesFollowTheTab(const View& view) {
  constexpr Seconds settled(20);
  while (clearsChecked_ < world_.clears.size() &&
         view.uptime - world_.clears[clearsChecked_].at > settled) {
    const auto& cleared = world_.clears[clearsChecked_++];
    const Client* client = world_.clientOf(cleared.to);
    const bool certain = cleared.wasShown && client && client->isHonest() &&
                         column_.launchedAt() < cleared.at && !diskWasFull(Seconds(60)) &&
                         ledger_.lastTypedAt(cleared.from) < cleared.at &&
                         ledger_.lastTypedAt(cleared.to) < cleared.at;
    if (!certain) continue;
    const auto old = column_.store().notes().entry(cleared.from);
    const auto now = column_.store().notes().entry(cleared.to);
    if (old.title != now.title || old.memo != now.memo) {
      broken("notes follow their tab", cleared.from + " to " + cleared.to);
    }
  }
}

void Checks::memoryStaysSmall(const View& view) const {
  const auto& memory = column_.store().memory();
  for (const auto& [sid, carry] : memory.pendingCarry) {
    const bool shown = world_.shown.contains(sid);
    const bool young = secondsSince1970(view.now) - carry.since < 60;
    if (!shown && !young) broken("what ended is forgotten", "a move of notes to " + sid);
  }
  for (const auto& [pid, sid] : memory.sidByPid) {
    if (!view.rows.contains({pid, sid})) broken("what ended is forgotten", "process of " + sid);
  }
  if (memory.burst.vanished.size() > 60) broken("what ended is forgotten", "closed ones");
}

}  // namespace zelvane::test
