#include "platform/session_bus.h"

#include <cstdlib>
#include <cstring>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "platform/local_socket.h"

namespace zelvane::platform {
namespace {

constexpr const char* variable = "DBUS_SESSION_BUS_ADDRESS";

/// Of the first address in the variable; nothing when it is no local socket.
std::optional<std::string> socketOf(std::string_view addresses) {
  const auto first = addresses.substr(0, addresses.find_first_of(",;"));
  for (const auto& [kind, mark] : {std::pair("unix:path=", ""), std::pair("unix:abstract=", "@")}) {
    if (first.starts_with(kind)) return mark + std::string(first.substr(std::strlen(kind)));
  }
  return std::nullopt;
}

std::optional<std::string> environment(const char* name) {
  const char* value = std::getenv(name);
  return value ? std::optional<std::string>(value) : std::nullopt;
}

std::optional<std::string> busSocket(const std::optional<std::string>& addresses) {
  if (addresses && !addresses->empty()) return socketOf(*addresses);
  const auto folder = environment("XDG_RUNTIME_DIR");
  return folder && !folder->empty() ? std::optional(*folder + "/bus") : std::nullopt;
}

bool isSilent(const std::string& socket, std::chrono::duration<double> patience) {
  using Clock = std::chrono::steady_clock;
  using namespace std::string_view_literals;
  const auto begin = Clock::now();
  // What every conversation begins with: how one may say who one is.
  const auto answer = askLocalSocket(socket, "\0AUTH\r\n"sv, patience,
                                     [](std::string_view said) { return said.ends_with("\r\n"); });
  return !answer && Clock::now() - begin >= patience;
}

}  // namespace

SilentBus::SilentBus(std::chrono::duration<double> patience) {
  const auto addresses = environment(variable);
  const auto socket = busSocket(addresses);
  if (!socket || !isSilent(*socket, patience)) return;
  setenv(variable, "unix:path=/dev/null", 1);
  giveBack_ = [addresses] {
    addresses ? setenv(variable, addresses->c_str(), 1) : unsetenv(variable);
  };
}

SilentBus::~SilentBus() {
  if (giveBack_) giveBack_();
}

}  // namespace zelvane::platform
