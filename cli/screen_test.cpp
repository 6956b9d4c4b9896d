#include "cli/screen.h"

#include <gmock/gmock.h>

namespace zelvane::cli {
namespace {

TEST(Frame, HoldsWhatFitsAndClearsTheRest) {
  struct Case {
    const char* what;
    std::vector<std::string> lines;
    int rows;
    std::string drawn;
  };
  const std::vector<Case> cases{
      {"nothing", {}, 3, "\x1b[J"},
      {"room to spare", {"a", "b"}, 3, "\x1b[Ka\r\n\x1b[Kb\r\n\x1b[J"},
      // A line break or clearing after the last row would scroll, or take its last character.
      {"just full", {"a", "b"}, 2, "\x1b[Ka\r\n\x1b[Kb"},
      {"too much", {"a", "b", "c"}, 2, "\x1b[Ka\r\n\x1b[K…"},
  };
  for (const auto& [what, lines, rows, drawn] : cases) {
    EXPECT_EQ(frame(lines, rows), "\x1b[?2026h\x1b[H" + drawn + "\x1b[?2026l") << what;
  }
}

}  // namespace
}  // namespace zelvane::cli
