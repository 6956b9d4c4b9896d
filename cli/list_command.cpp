#include "cli/list_command.h"

#include "core/run_loop.h"

#include "cli/listing_json.h"
#include "cli/listing_text.h"
#include "cli/output.h"
#include "cli/text_layout.h"

namespace zelvane::cli {
namespace {

Listing currentListing() {
  RunLoop loop;
  const auto store = readOnlyStore(loop.executor());
  store->observe([&](ZelvaneStore::Change change) {
    if (change == ZelvaneStore::Change::passed) loop.stop();
  });
  store->refreshNow();
  loop.run();
  return listingOf(*store, systemTime());
}

}  // namespace

ExitCode list(Format format) {
  const auto listing = currentListing();
  const auto text = format == Format::json ? listingJson(listing, JsonLayout::indented)
                                           : joined(listingText(listing, outputLook()));
  return exitCode(writeOut(text));
}

}  // namespace zelvane::cli
