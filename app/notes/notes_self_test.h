// Proves on this very machine that notes survive damaged files, edits and removals.
#pragma once

#include <iosfwd>

namespace zelvane {

/// Plays every scenario in a temporary folder and prints one line for each; true when all passed.
/// Without such a folder none does, and `errors` gets a sentence.
/// Touches nothing else.
bool runNotesSelfTest(std::ostream& out, std::ostream& errors);

}  // namespace zelvane
