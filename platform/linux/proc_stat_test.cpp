#include "platform/linux/proc_stat.h"

#include <gmock/gmock.h>

namespace zelvane::platform {
namespace {

TEST(ProcStatLine, NameEndsAtTheLastParenthesis) {
  const auto stat = parseProcStat("41 (tmux: server (x) y) S 7 41 41 34816 41 4194560 1 2");
  ASSERT_TRUE(stat);
  EXPECT_EQ(stat->name, "tmux: server (x) y");
  EXPECT_EQ(stat->state, 'S');
  EXPECT_EQ(stat->parent, 7);
  EXPECT_EQ(stat->ttyNumber, 34816);
}

TEST(ProcStatLine, RefusesWhatIsCutShort) {
  for (const char* line : {"", "41", "41 (a", "41 a) S 1", "41 (a)", "41 (a) S 7 41", ")("}) {
    EXPECT_FALSE(parseProcStat(line)) << line;
  }
}

TEST(TTYPath, DecodesDeviceNumbers) {
  const std::vector<std::pair<std::int32_t, std::optional<std::string>>> cases{
      {0, std::nullopt},   {34816, "/dev/pts/0"}, {1083422, "/dev/pts/286"},
      {1025, "/dev/tty1"}, {1088, "/dev/ttyS0"},  {-1, std::nullopt}};
  for (const auto& [number, path] : cases) EXPECT_EQ(ttyPath(number), path) << number;
}

}  // namespace
}  // namespace zelvane::platform
