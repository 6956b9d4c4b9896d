// A listing for people. Pure.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "cli/listing.h"

namespace zelvane::cli {

enum class Colours { no, yes };

/// How the text may look where it goes.
struct Look {
  std::optional<int> columns = std::nullopt;  ///< no line is wider; nothing: no line is cut
  Colours colours = Colours::no;
};

/// The lines: an offer to reopen tabs if there is one, then the rows in two sections, numbered in
/// their order. Wide ones have a line per row, narrow ones (below 64 columns) two.
std::vector<std::string> listingText(const Listing& listing, const Look& look);

}  // namespace zelvane::cli
