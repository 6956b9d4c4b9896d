#include "platform/local_socket.h"

#include <algorithm>
#include <gmock/gmock.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <thread>
#include <unistd.h>

#include "platform/process_environment.h"

#include "tests/support/temporary_folder.h"

namespace zelvane::platform {
namespace {

using namespace std::chrono_literals;

/// A listener that answers one request with fixed bytes, if with any, and then stays or hangs up.
class Listener {
 public:
  explicit Listener(const std::string& path) : fd_(socket(AF_UNIX, SOCK_STREAM, 0)) {
    sockaddr_un name{};
    name.sun_family = AF_UNIX;
    std::copy(path.begin(), path.end(), name.sun_path);
    EXPECT_EQ(bind(fd_, reinterpret_cast<const sockaddr*>(&name), sizeof name), 0);
    EXPECT_EQ(listen(fd_, 1), 0);
  }
  ~Listener() { close(fd_); }

  /// Takes a request that ends with a line feed and answers it; then hangs up.
  std::thread answerOnce(std::string answer) const {
    return std::thread([fd = fd_, answer = std::move(answer)] {
      const int peer = accept(fd, nullptr, nullptr);
      char byte = 0;
      while (read(peer, &byte, 1) == 1 && byte != '\n') {
      }
      (void)!write(peer, answer.data(), answer.size());
      close(peer);
    });
  }

 private:
  int fd_;
};

bool endsWithDot(std::string_view answer) { return answer.ends_with('.'); }

TEST(LocalSocket, BringsAnswersThatAreWhole) {
  const test::TemporaryFolder folder;
  const auto path = folder.path("socket");
  const Listener listener(path);
  EXPECT_THAT(listeningSockets(getpid()), testing::Contains(path));
  const auto ask = [&] { return askLocalSocket(path, "hello\n", 10s, endsWithDot); };
  for (const std::string& answer : {std::string("yes."), std::string(300'000, 'x') + "."}) {
    auto other = listener.answerOnce(answer);
    EXPECT_EQ(ask(), answer);
    other.join();
  }
  auto other = listener.answerOnce("half");
  EXPECT_EQ(ask(), std::nullopt);
  other.join();
}

TEST(LocalSocket, WaitsNoLongerThanItMay) {
  const test::TemporaryFolder folder;
  const Listener silent(folder.path("socket"));
  const auto start = std::chrono::steady_clock::now();
  // One is taken into the queue and not answered, the next do not even get in.
  for (int i = 0; i < 4; ++i) {
    EXPECT_FALSE(
        askLocalSocket(folder.path("socket"), std::string(2'000'000, 'x'), 50ms, endsWithDot));
  }
  EXPECT_LT(std::chrono::steady_clock::now() - start, 2s);
  for (const std::string& address : {std::string(), folder.path("none"), folder.path(),
                                     std::string("@zelvane-none"), std::string(200, 'x')}) {
    EXPECT_FALSE(askLocalSocket(address, "x", 10s, endsWithDot)) << address;
  }
}

TEST(ProcessEnvironment, IsWhatTheProcessWasStartedWith) {
  EXPECT_THAT(processEnvironment(getpid()), testing::HasSubstr("PATH="));
  for (const std::int32_t pid : {0, -1, INT32_MAX}) {
    EXPECT_EQ(processEnvironment(pid), "") << pid;
    EXPECT_TRUE(listeningSockets(pid).empty()) << pid;
  }
}

}  // namespace
}  // namespace zelvane::platform
