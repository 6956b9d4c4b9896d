// The mark that a system puts on downloaded files, so that it asks before running them.
#pragma once

#include <string>

namespace zelvane::platform {

/// Takes the mark off a file of ours; nothing happens where there is none, or no such thing.
void clearQuarantine(const std::string& path);

}  // namespace zelvane::platform
