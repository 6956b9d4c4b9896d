#include "platform/data_folder.h"

#include "platform/home_folder.h"

namespace zelvane::platform {

std::string dataFolder() { return homeFolder() + "/Library/Application Support"; }

}  // namespace zelvane::platform
