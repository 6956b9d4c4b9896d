#include "app/login/login_item.h"

#include <filesystem>
#include <unistd.h>

#include "core/json_file.h"
#include "core/paths.h"

namespace zelvane::LoginItem {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t largestFile = std::size_t{64} << 10;

bool exists(const std::string& path) {
  std::error_code failed;
  return fs::exists(fs::symlink_status(path, failed));
}

/// Whether the path does not last: a copy that the system made of a download, or a disk image.
bool isPassing(const std::string& app) {
  return app.find("/AppTranslocation/") != std::string::npos || app.starts_with("/Volumes/");
}

}  // namespace

std::string path() { return ZelvanePaths::loginItem().value_or(systemLoginFormat().path); }

bool isOn() { return exists(path()); }

std::optional<std::string> target() {
  const auto text = readFile(path(), largestFile);
  return text ? systemLoginFormat().target(*text) : std::nullopt;
}

void set(bool on, const std::string& appPath) {
  if (!on) {
    unlink(path().c_str());
    return;
  }
  std::error_code ignored;
  fs::create_directories(fs::path(path()).parent_path(), ignored);
  (void)replaceFile(path(), systemLoginFormat().text(appPath));
}

bool repairIfMoved(const std::string& appPath) {
  if (!isOn()) return false;
  const auto opened = target();
  if (!opened || *opened == appPath || exists(*opened) || isPassing(appPath)) return false;
  set(true, appPath);
  return true;
}

}  // namespace zelvane::LoginItem
