#include "cli/list_command.h"

#include "cli/listing_json.h"
#include "cli/listing_text.h"
#include "cli/output.h"
#include "cli/text_layout.h"

namespace zelvane::cli {

ExitCode list(Format format) {
  const auto listing = currentListing();
  tell(listing.notesProblem);
  const auto text = format == Format::json ? listingJson(listing, JsonLayout::indented)
                                           : joined(listingText(listing, outputLook()));
  return exitCode(writeOut(text));
}

}  // namespace zelvane::cli
