#include "platform/child_process.h"

#include <algorithm>
#include <csignal>
#include <dirent.h>
#include <gmock/gmock.h>
#include <sys/wait.h>
#include <thread>

namespace zelvane::platform {
namespace {

using namespace std::chrono_literals;

ChildRequest shell(const std::string& script, std::chrono::duration<double> timeout = 20s) {
  return {.executable = "/bin/sh", .arguments = {"-c", script}, .folder = {}, .timeout = timeout};
}

std::size_t openDescriptors() {
  DIR* folder = opendir("/dev/fd");
  std::size_t count = 0;
  while (readdir(folder)) ++count;
  closedir(folder);
  return count;
}

TEST(RunChild, ReturnsStatusAndOutput) {
  struct Case {
    const char* what;
    ChildRequest request;
    std::int32_t status;
    std::string output;
  };
  auto inFolder = shell("pwd");
  inFolder.folder = "/";
  auto inMissingFolder = shell("pwd");
  inMissingFolder.folder = "/no/such/folder";
  auto withEnvironment = shell("echo \"$HOME $ADDED\"");
  withEnvironment.environment = {"HOME=/x", "ADDED=y z"};
  const std::vector<Case> cases{
      {"output as written", shell("printf 'a\\nb'"), 0, "a\nb"},
      {"exit status", shell("exit 7"), 7, ""},
      {"ended by a signal", shell("kill -9 $$"), 128 + SIGKILL, ""},
      {"working folder", inFolder, 0, "/\n"},
      {"missing folder", inMissingFolder, -1, ""},
      {"environment replaced and added", withEnvironment, 0, "/x y z\n"},
      {"standard error is not output", shell("echo no >&2; cat"), 0, ""},
      {"missing program",
       {.executable = "/no/such/program", .arguments = {}, .folder = {}},
       -1,
       ""},
      {"a folder is no program",
       {.executable = "/", .arguments = {}, .folder = {}, .timeout = 1s},
       -1,
       ""},
  };
  for (const auto& [what, request, status, output] : cases) {
    const auto result = runChild(request);
    EXPECT_EQ(result.status, status) << what;
    EXPECT_EQ(result.output, output) << what;
  }
}

TEST(RunChild, EndsDifficultChildren) {
  struct Case {
    const char* what;
    const char* script;
    std::chrono::duration<double> timeout;
    std::chrono::duration<double> atMost;
    const char* output;
  };
  const std::vector<Case> cases{
      {"sleeps past its time-out", "echo begun; exec sleep 30", 300ms, 5s, "begun\n"},
      {"closes its output but lives", "echo shut; exec >&-; sleep 30", 300ms, 5s, "shut\n"},
      {"ignores the request to end", "trap '' TERM; echo deaf; while :; do sleep 1; done", 300ms,
       8s, "deaf\n"},
      {"leaves a process with its output open", "sleep 30 & echo left", 20s, 10s, "left\n"},
  };
  for (const auto& [what, script, timeout, atMost, output] : cases) {
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(runChild(shell(script, timeout)).output, output) << what;
    EXPECT_LT(std::chrono::steady_clock::now() - start, atMost) << what;
  }
}

TEST(RunChild, TakesMegabytesAndStopsAFlood) {
  const auto large = runChild(shell("head -c 5000000 /dev/zero"));
  EXPECT_EQ(large.output.size(), 5'000'000U);
  const auto flood = runChild(shell("exec yes", 200ms));
  EXPECT_EQ(flood.status, 128 + SIGTERM);
  EXPECT_LE(flood.output.size(), std::size_t{64} << 20);
}

TEST(RunChild, LeaksNoDescriptorAndNoZombie) {
  const auto before = openDescriptors();
  // A descriptor that somebody opened without close-on-exec stays out of the child, too.
  const auto careless = runChild(shell("ls /dev/fd/ | wc -l"));
  FILE* open = fopen("/dev/null", "r");
  EXPECT_EQ(runChild(shell("ls /dev/fd/ | wc -l")).output, careless.output);
  fclose(open);
  std::vector<std::thread> threads;
  for (int i = 0; i < 8; ++i) threads.emplace_back([] { runChild(shell("exit 0")); });
  for (auto& thread : threads) thread.join();
  EXPECT_EQ(openDescriptors(), before);
  EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1);
  EXPECT_EQ(errno, ECHILD);
}

TEST(RunChild, DoesNotInventAStatus) {
  std::signal(SIGCHLD, SIG_IGN);
  const auto result = runChild(shell("echo x; exit 7"));
  std::signal(SIGCHLD, SIG_DFL);
  EXPECT_EQ(result.output, "x\n");
  EXPECT_EQ(result.status, -1);
}

}  // namespace
}  // namespace zelvane::platform
