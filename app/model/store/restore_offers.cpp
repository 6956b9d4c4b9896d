#include "app/model/store/restore_offers.h"

#include <utility>

#include "core/shell.h"

#include "app/model/refresh/offers.h"
#include "app/model/snapshots/restore_outcome.h"

namespace zelvane {
namespace {

constexpr Seconds longestRun(900);
// As long as stragglers of the same burst may still come in.
constexpr Seconds dismissedFor(10);

}  // namespace

RestoreOffers::~RestoreOffers() {
  cancelled_ = true;
  q_.reset();
}

void RestoreOffers::follow(std::vector<Json> pending, const std::optional<std::vector<Json>>& burst,
                           const std::vector<ZelvaneSession>& rows) {
  // Dismissed while the pass was looking.
  if (!pending.empty() && !options_.files->hasRebootSnapshot()) pending.clear();
  setPending(std::move(pending));
  const Time now = options_.clock();
  const bool dismissed = within(dismissedFor, dismissedAt_, now);
  setRecent(recentClosedAfter(recentClosed_, burst, dismissed, rows, now));
}

void RestoreOffers::restoreReboot() { run(options_.files->rebootSnapshotPath(), /*exact=*/false); }

void RestoreOffers::restoreRecent() {
  if (!restoring_) options_.files->writeRecentlyClosed(recentClosed_, options_.clock());
  run(options_.files->recentlyClosedPath(), /*exact=*/true);
}

void RestoreOffers::dismissRestore() {
  options_.files->removeRebootSnapshot();
  setPending({});
  setMessage("");
}

void RestoreOffers::dismissRecent() {
  dismissedAt_ = options_.clock();
  setRecent({});
  setMessage("");
}

void RestoreOffers::run(const std::string& snapshot, bool exact) {
  if (!options_.command || restoring_) return;
  setRestoring(true);
  setMessage("");
  if (!q_) q_ = std::make_unique<SerialQueue>("zelvane.restore");
  q_->post([this, weak = weak_from_this(), main = options_.mainThread, snapshot, exact] {
    main([weak, exact, output = options_.command(snapshot, exact, cancelled_)] {
      if (const auto self = weak.lock()) self->ended(output, exact);
    });
  });
}

void RestoreOffers::ended(const std::string& output, bool exact) {
  setRestoring(false);
  if (auto problem = restoreProblem(output)) {
    setMessage(std::move(*problem));
    options_.refresh();
  } else if (exact) {
    setRecent({});
  } else {
    dismissRestore();
  }
}

void RestoreOffers::setPending(std::vector<Json> items) {
  if (items == pendingRestore_) return;
  pendingRestore_ = std::move(items);
  options_.changed(Change::pendingRestore);
}

void RestoreOffers::setRecent(std::vector<Json> items) {
  if (items == recentClosed_) return;
  recentClosed_ = std::move(items);
  options_.changed(Change::recentClosed);
}

void RestoreOffers::setRestoring(bool restoring) {
  restoring_ = restoring;
  options_.changed(Change::restoring);
}

void RestoreOffers::setMessage(std::string message) {
  if (message == restoreMessage_) return;
  restoreMessage_ = std::move(message);
  options_.changed(Change::restoreMessage);
}

RestoreCommand restoreCommand(const std::string& program) {
  return [program](const std::string& snapshot, bool exact, const std::atomic<bool>& cancelled) {
    std::vector<std::string> arguments{"restore"};
    if (exact) arguments.emplace_back("--exact");
    return Shell::run(program, arguments, {{"ZELVANE_SNAPSHOT", snapshot}}, longestRun, &cancelled);
  };
}

}  // namespace zelvane
