// What must be shown, worked out from the files' contents and the world's truth without the code
// under test.
#pragma once

#include <optional>

#include "core/json_file.h"

#include "app/model/records/session.h"
#include "tests/simulator/world.h"

namespace zelvane::test {

struct Expected {
  ZelvaneState state = ZelvaneState::idle;
  std::optional<double> since;  ///< seconds since 1970
  bool seenNow = false;         ///< finished in the tab in front: counts as looked at from now on
};

/// The state that follows from a session's file and record. Of the two the newer one counts about
/// dialogs and turns.
Expected expectedState(const FileTruth& file, const Json& record, std::optional<double> lookedAt,
                       bool inFront, double now);

/// Whether one row may stand right before another.
bool inOrder(const ZelvaneSession& above, const ZelvaneSession& below,
             const std::vector<std::string>& pins);

}  // namespace zelvane::test
