#include "platform/home_folder.h"

#include <pwd.h>
#include <unistd.h>
#include <vector>

namespace zelvane::platform {
namespace {

/// One field of the user's entry in the user database; empty when there is none.
std::string userEntry(char* passwd::*field) {
  std::vector<char> buffer(16384);
  passwd entry{};
  passwd* found = nullptr;
  if (getpwuid_r(getuid(), &entry, buffer.data(), buffer.size(), &found) != 0 || !found) return {};
  const char* value = found->*field;
  return value ? value : "";
}

}  // namespace

std::string homeFolder() {
  std::string home = userEntry(&passwd::pw_dir);
  while (home.size() > 1 && home.back() == '/') home.pop_back();
  return home.empty() ? "/" : home;
}

std::string loginShell() {
  const auto shell = userEntry(&passwd::pw_shell);
  return shell.starts_with('/') ? shell : "/bin/sh";
}

}  // namespace zelvane::platform
