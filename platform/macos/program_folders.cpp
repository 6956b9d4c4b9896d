#include "platform/program_folders.h"

namespace zelvane::platform {

// What is opened from the Dock or at login has a PATH of the system's own folders only.
std::vector<std::string> programFolders() {
  return {"/opt/homebrew/bin", "/usr/local/bin", "/opt/local/bin"};
}

}  // namespace zelvane::platform
