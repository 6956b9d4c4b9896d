#include "platform/local_socket.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include "platform/posix/local_stream.h"

namespace zelvane::platform {
namespace {

using Clock = std::chrono::steady_clock;

constexpr std::size_t largestAnswer = std::size_t{16} << 20;

class Connection {
 public:
  Connection(const std::string& address, Clock::time_point deadline)
      : fd_(openLocalStream()), deadline_(deadline) {
    open_ = fd_ >= 0 && connectTo(address);
  }
  Connection(const Connection&) = delete;
  Connection& operator=(const Connection&) = delete;
  ~Connection() {
    if (fd_ >= 0) close(fd_);
  }

  bool send(std::string_view bytes) {
    while (open_ && !bytes.empty()) {
      const ssize_t count = sendQuietly(fd_, bytes.data(), bytes.size());
      if (count > 0) bytes.remove_prefix(static_cast<std::size_t>(count));
      if (count <= 0 && !(isTransient() && await(POLLOUT))) return false;
    }
    return open_;
  }

  /// Adds what came; false at the end, at the deadline and on errors.
  bool receive(std::string& bytes) {
    std::array<char, 65536> buffer;
    while (await(POLLIN)) {
      const ssize_t count = recv(fd_, buffer.data(), buffer.size(), 0);
      if (count < 0 && isTransient()) continue;
      if (count <= 0) return false;
      bytes.append(buffer.data(), static_cast<std::size_t>(count));
      return true;
    }
    return false;
  }

 private:
  static bool isTransient() { return errno == EAGAIN || errno == EINTR; }

  bool connectTo(const std::string& address) const {
    sockaddr_un name{};
    name.sun_family = AF_UNIX;
    if (address.empty() || address.size() >= sizeof name.sun_path) return false;
    std::memcpy(name.sun_path, address.data(), address.size());
    auto length = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + address.size());
    if (address.front() == '@') {
      name.sun_path[0] = '\0';
    } else {
      ++length;
    }
    // A local connection is made at once, or refused: also when the listener's queue is full.
    return connect(fd_, reinterpret_cast<const sockaddr*>(&name), length) == 0;
  }

  bool await(short event) const {
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline_ - Clock::now());
    if (left.count() <= 0) return false;
    pollfd wanted{fd_, event, 0};
    const int result =
        poll(&wanted, 1, static_cast<int>(std::min<std::int64_t>(left.count(), 3'600'000)));
    return result > 0 || (result < 0 && errno == EINTR);
  }

  int fd_;
  Clock::time_point deadline_;
  bool open_ = false;
};

}  // namespace

std::optional<std::string> askLocalSocket(const std::string& address, std::string_view request,
                                          std::chrono::duration<double> timeout,
                                          const std::function<bool(std::string_view)>& isWhole) {
  const auto deadline = Clock::now() + std::chrono::duration_cast<Clock::duration>(timeout);
  Connection connection(address, deadline);
  if (!connection.send(request)) return std::nullopt;
  std::string answer;
  while (connection.receive(answer)) {
    if (isWhole(answer)) return answer;
    if (answer.size() > largestAnswer) break;
  }
  return std::nullopt;
}

}  // namespace zelvane::platform
