#include "core/private_folder.h"

#include <cerrno>
#include <filesystem>
#include <sys/stat.h>

namespace zelvane {

std::error_code makePrivateFolder(const std::string& path) {
  const auto made = [&] { return mkdir(path.c_str(), 0700) == 0; };
  if (made()) return {};
  if (errno == ENOENT) {
    const auto parent = std::filesystem::path(path).parent_path();
    if (parent.empty() || parent == path) return {ENOENT, std::generic_category()};
    if (const auto failed = makePrivateFolder(parent.string())) return failed;
    if (made()) return {};
  }
  if (const int error = errno; error != EEXIST) return {error, std::generic_category()};
  std::error_code failed;
  if (std::filesystem::is_directory(path, failed) || failed) return failed;
  return std::make_error_code(std::errc::not_a_directory);
}

}  // namespace zelvane
