#include "platform/data_folder.h"

#include <cstdlib>

#include "platform/home_folder.h"

namespace zelvane::platform {

std::string dataFolder() {
  const char* chosen = std::getenv("XDG_DATA_HOME");
  // The XDG rules ignore a relative path.
  std::string folder = chosen && *chosen == '/' ? chosen : homeFolder() + "/.local/share";
  while (folder.size() > 1 && folder.back() == '/') folder.pop_back();
  return folder;
}

}  // namespace zelvane::platform
