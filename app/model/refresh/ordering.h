// The order of the rows. Pure.
#pragma once

#include <string>
#include <vector>

#include "app/model/records/session.h"

namespace zelvane {

/// Sorts the rows for display: ongoing ones first; within them and within the rest pinned ones, in
/// the order of the pins; then by urgency, then the latest first. Rows that tie keep their order.
void orderRows(std::vector<ZelvaneSession>& rows, const std::vector<std::string>& pins);

}  // namespace zelvane
