// Which row the user means. Pure.
#pragma once

#include <string>
#include <variant>
#include <vector>

#include "app/model/records/session.h"

namespace zelvane::cli {

enum class NoRow { unknown, ambiguous };

/// The row with that session id; or with that number in the list, from 1; or whose id alone begins
/// so. Rows of one session count as one.
std::variant<ZelvaneSession, NoRow> chosenRow(const std::vector<ZelvaneSession>& rows,
                                              const std::string& wanted);

}  // namespace zelvane::cli
