#include "cli/listing.h"

#include "core/paths.h"
#include "core/run_loop.h"
#include "core/standard_defaults.h"

namespace zelvane::cli {

bool sameContent(const Listing& a, const Listing& b) {
  return a.sessions == b.sessions && a.pendingRestore == b.pendingRestore &&
         a.recentClosed == b.recentClosed && a.notesProblem == b.notesProblem;
}

std::shared_ptr<ZelvaneStore> readOnlyStore(Executor mainThread, WithNotes notes) {
  auto options = ZelvaneStore::systemOptions(standardDefaults(), std::move(mainThread));
  options.readOnly = true;
  if (notes == WithNotes::no) options.notesDir = "/dev/null";  // nothing can be in it
  return ZelvaneStore::create(std::move(options));
}

Listing listingOf(const ZelvaneStore& store, Time now) {
  return {.at = now,
          .home = Paths::home(),
          .sessions = store.sessions(),
          .pendingRestore = store.offers().pendingRestore(),
          .recentClosed = store.offers().recentClosed(),
          .notesProblem = store.notesProblem()};
}

Listing currentListing(WithNotes notes) {
  RunLoop loop;
  const auto store = readOnlyStore(loop.executor(), notes);
  store->observe([&](ZelvaneStore::Change change) {
    if (change == ZelvaneStore::Change::passed) loop.stop();
  });
  store->refreshNow();
  loop.run();
  return listingOf(*store, systemTime());
}

}  // namespace zelvane::cli
