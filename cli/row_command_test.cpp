#include "cli/row_command.h"

#include <gtest/gtest.h>

#include "cli/terminals_command.h"

namespace zelvane::cli {
namespace {

ZelvaneSession row(const char* id, ZelvaneState state, std::optional<double> since) {
  ZelvaneSession session;
  session.id = id;
  session.state = state;
  if (since) session.since = timeAt(*since);
  return session;
}

TEST(NextRow, IsTheOneThatHasWaitedLongest) {
  using enum ZelvaneState;
  struct Case {
    std::vector<ZelvaneSession> rows;
    std::string expected;
  };
  const Case cases[] = {
      {{}, "-"},
      {{row("a", working, 1), row("b", idle, 1), row("c", agents, 1)}, "-"},
      {{row("a", waiting, 5), row("b", waiting, 3), row("c", done, 1)}, "b"},
      {{row("a", done, 5), row("b", done, 3), row("c", working, 1)}, "b"},
      {{row("a", waiting, 5), row("b", waiting, {})}, "b"},
  };
  for (const auto& [rows, expected] : cases) {
    const auto next = nextRow(rows);
    EXPECT_EQ(next ? next->id : "-", expected);
  }
}

TEST(SupportText, NamesWhatWorksAndWhatUnlocksTheRest) {
  EXPECT_EQ(supportText({}), "Claude Code 가 도는 터미널이 없어요.\n");
  EXPECT_EQ(supportText({{"kit\x1bty", true, true, false, true, "켜 주세요"},
                         {"tmux", true, true, true, false, ""}}),
            "kit ty\n    ✓ 탭 이름   ✓ 앞에 있는 탭   ✗ 탭으로 이동   ✓ 새 탭\n    켜 주세요\n"
            "tmux\n    ✓ 탭 이름   ✓ 앞에 있는 탭   ✓ 탭으로 이동   ✗ 새 탭\n");
}

}  // namespace
}  // namespace zelvane::cli
