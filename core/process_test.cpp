#include "core/process.h"

#include <csignal>
#include <gmock/gmock.h>
#include <pty.h>
#include <sys/wait.h>
#include <unistd.h>

#include "core/shell.h"

namespace zelvane {
namespace {

/// A process under a name of our choice on a terminal of its own, ended with the test.
class NamedProcess {
 public:
  explicit NamedProcess(const char* name) {
    pid_ = forkpty(&terminal_, nullptr, nullptr, nullptr);
    if (pid_ == 0) {
      execl("/bin/sleep", name, "60", nullptr);
      _exit(1);
    }
    const std::string file = std::string(name).substr(std::string(name).rfind('/') + 1);
    for (int look = 0; Proc::invokedName(pid_) != file && look < 10'000; ++look) usleep(1000);
  }
  ~NamedProcess() {
    kill(pid_, SIGKILL);
    waitpid(pid_, nullptr, 0);
    close(terminal_);
  }
  pid_t pid() const { return pid_; }

 private:
  pid_t pid_ = -1;
  int terminal_ = -1;
};

TEST(Proc, TellsClaudeFromItsNamesakes) {
  struct Case {
    const char* name;
    bool isClaude;
    bool listed;
  };
  const std::vector<Case> cases{{"/opt/bin/claude", true, true},
                                {"Claude", true, true},
                                {"claude-helper", true, false},
                                {"bash", false, false}};
  for (const auto& [name, isClaude, listed] : cases) {
    const NamedProcess process(name);
    const auto info = Proc::info(process.pid());
    ASSERT_TRUE(info && info->tty) << name;
    EXPECT_THAT(*info->tty, testing::StartsWith("/dev/"));
    EXPECT_EQ(Procs::tty(process.pid()), info->tty);
    EXPECT_EQ(Proc::isClaude(process.pid(), *info), isClaude) << name;
    EXPECT_EQ(Proc::claudeTTYs().contains(process.pid()), listed) << name;
  }
}

TEST(Proc, AliveCountsProcessesOfOthers) {
  EXPECT_TRUE(Proc::alive(getpid()));
  EXPECT_TRUE(Proc::alive(1));
  for (const std::int32_t pid : {0, -1, INT32_MAX}) EXPECT_FALSE(Proc::alive(pid)) << pid;
  EXPECT_EQ(secondsSince1970(Procs::bootTime()), Proc::bootTime());
}

TEST(Shell, RepairsOutputAndReportsFailure) {
  const auto run =
      Shell::run("/bin/sh", {"-c", "printf 'a\\377b'; exit 3"}, std::nullopt, Seconds(20));
  EXPECT_EQ(run.code, 3);
  EXPECT_EQ(run.out, "a\uFFFDb");
  EXPECT_EQ(Shell::run("/no/such/program", {}, std::nullopt, Seconds(1)).code, -1);
  EXPECT_EQ(Shell::run("/no/such/program", {}, Shell::Environment{}, Seconds(1)), "");
  EXPECT_EQ(Shell::run("/bin/sh", {"-c", "printf \"$A $HOME\""},
                       Shell::Environment{{"A", "1"}, {"HOME", "/h"}}, Seconds(20)),
            "1 /h");
}

}  // namespace
}  // namespace zelvane
