#include "platform/program_folders.h"

namespace zelvane::platform {

std::vector<std::string> programFolders() { return {}; }

}  // namespace zelvane::platform
