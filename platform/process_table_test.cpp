#include "platform/process_table.h"

#include <algorithm>
#include <gmock/gmock.h>
#include <sys/wait.h>
#include <unistd.h>

#include "platform/boot_time.h"
#include "platform/linux/proc_stat.h"

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
      {0, std::nullopt},    {34816, "/dev/pts/0"}, {1083422, "/dev/pts/286"},   {1025, "/dev/tty1"},
      {1088, "/dev/ttyS0"}, {-1, std::nullopt},    {(5 << 8) | 1, std::nullopt}};
  for (const auto& [number, path] : cases) EXPECT_EQ(ttyPath(number), path) << number;
}

TEST(ProcessTable, KnowsThisProcess) {
  const auto self = processInfo(getpid());
  ASSERT_TRUE(self);
  EXPECT_EQ(self->parent, getppid());
  EXPECT_EQ(self->name, "platform_test");
  EXPECT_THAT(firstArgument(getpid()).value_or(""), testing::EndsWith("platform_test"));
  EXPECT_THAT(processIds(), testing::Contains(getpid()));
  EXPECT_GT(bootTime(), 1'000'000'000);
}

TEST(ProcessTable, HasNothingForPidsThatAreNotAlive) {
  for (const std::int32_t pid : {0, -1, INT32_MAX}) EXPECT_FALSE(processInfo(pid)) << pid;
  const pid_t child = fork();
  if (child == 0) _exit(0);
  siginfo_t info;
  waitid(P_PID, static_cast<id_t>(child), &info, WEXITED | WNOWAIT);  // a zombie from here on
  EXPECT_FALSE(processInfo(child));
  waitpid(child, nullptr, 0);
}

}  // namespace
}  // namespace zelvane::platform
