// Folders for what tells what somebody works on. Stateless; any thread.
#pragma once

#include <string>
#include <system_error>

namespace zelvane {

/// Makes the folder, and those above it that are missing, for this user's eyes only; one that is
/// there keeps its permissions. The system's error when there is no such folder afterwards.
std::error_code makePrivateFolder(const std::string& path);

}  // namespace zelvane
