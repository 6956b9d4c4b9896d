// A listing for programs. Pure.
#pragma once

#include <string>

#include "cli/listing.h"

namespace zelvane::cli {

enum class JsonLayout { indented, oneLine };

/// The listing as one JSON object and a line break. Always valid UTF-8, and without control
/// characters other than the layout's line breaks, whatever its texts hold.
std::string listingJson(const Listing& listing, JsonLayout layout);

}  // namespace zelvane::cli
