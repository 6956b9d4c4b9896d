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

/// Of the first address in the variable; nothing when it is no local socket.
std::optional<std::string> socketOf(std::string_view addresses) {
  const auto first = addresses.substr(0, addresses.find_first_of(",;"));
  for (const auto& [kind, mark] : {std::pair("unix:path=", ""), std::pair("unix:abstract=", "@")}) {
    if (first.starts_with(kind)) return mark + std::string(first.substr(std::strlen(kind)));
  }
  return std::nullopt;
}

std::optional<std::string> busSocket() {
  const char* addresses = std::getenv("DBUS_SESSION_BUS_ADDRESS");
  if (addresses && *addresses) return socketOf(addresses);
  const char* folder = std::getenv("XDG_RUNTIME_DIR");
  if (!folder || !*folder) return std::nullopt;
  return std::string(folder) + "/bus";
}

}  // namespace

bool sessionBusIsSilent(std::chrono::duration<double> patience) {
  using Clock = std::chrono::steady_clock;
  using namespace std::string_view_literals;
  const auto socket = busSocket();
  if (!socket) return false;
  const auto begin = Clock::now();
  // What every conversation begins with: how one may say who one is.
  const auto answer = askLocalSocket(*socket, "\0AUTH\r\n"sv, patience,
                                     [](std::string_view said) { return said.ends_with("\r\n"); });
  return !answer && Clock::now() - begin >= patience;
}

}  // namespace zelvane::platform
