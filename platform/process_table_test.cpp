#include "platform/process_table.h"

#include <algorithm>
#include <gmock/gmock.h>
#include <sys/wait.h>
#include <unistd.h>

#include "platform/boot_time.h"

namespace zelvane::platform {
namespace {

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
