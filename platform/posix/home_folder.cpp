#include "platform/home_folder.h"

#include <pwd.h>
#include <unistd.h>
#include <vector>

namespace zelvane::platform {

std::string homeFolder() {
  std::vector<char> buffer(16384);
  passwd entry{};
  passwd* found = nullptr;
  if (getpwuid_r(getuid(), &entry, buffer.data(), buffer.size(), &found) != 0 || !found ||
      !found->pw_dir || !*found->pw_dir) {
    return "/";
  }
  std::string home = found->pw_dir;
  while (home.size() > 1 && home.back() == '/') home.pop_back();
  return home;
}

}  // namespace zelvane::platform
