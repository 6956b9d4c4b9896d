// Rows that no session stands behind, for demonstrations and pictures. Pure.
#pragma once

#include <string_view>
#include <vector>

#include "core/time.h"

#include "app/model/records/session.h"

namespace zelvane {

/// `count` working rows that began now, with `friends` characters in turn (at least 1).
std::vector<ZelvaneSession> demoRows(int count, std::int64_t friends, Time now);

/// Five rows, one for each state.
std::vector<ZelvaneSession> showcaseRows(std::int64_t friends, Time now);

}  // namespace zelvane
