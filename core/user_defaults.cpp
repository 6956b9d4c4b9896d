#include "core/user_defaults.h"

#include <filesystem>

#include "core/file_lock.h"
#include "core/paths.h"

namespace zelvane {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t largestSettings = std::size_t{4} << 20;

}  // namespace

std::string FileDefaults::standardPath() {
  const auto configuration = ZelvanePaths::env("XDG_CONFIG_HOME");
  // The XDG rules ignore a relative path.
  const bool usable = configuration && configuration->front() == '/';
  return (usable ? *configuration : Paths::home() + "/.config") + "/zelvane/settings.json";
}

std::optional<Json> FileDefaults::value(const std::string& key) const {
  const auto settings = JSONFile::load(path_, largestSettings);
  const Json* found = settings ? get::any(*settings, key) : nullptr;
  return found ? std::optional(*found) : std::nullopt;
}

void FileDefaults::set(const std::string& key, const Json& value) {
  change([&](Json& settings) { settings[key] = value; });
}

void FileDefaults::remove(const std::string& key) {
  change([&](Json& settings) { settings.erase(key); });
}

void FileDefaults::change(const std::function<void(Json& settings)>& edit) {
  const std::lock_guard alone(writing_);
  std::error_code failed;
  fs::create_directories(fs::path(path_).parent_path(), failed);
  const FileLock::Scope lock(path_ + ".lock", FileLock::Wait::yes);
  if (!lock) return;
  auto settings = JSONFile::load(path_, largestSettings);
  if (!settings && !mayReplace()) return;
  Json changed = settings.value_or(Json::object());
  edit(changed);
  if (settings != changed) (void)JSONFile::writeAtomic(changed, path_);
}

/// Whether a file that did not load may be replaced: none is there, or it could be kept aside.
bool FileDefaults::mayReplace() const {
  std::error_code failed;
  if (!fs::exists(fs::symlink_status(path_, failed))) return true;
  const std::string kept = path_ + ".damaged";
  if (!fs::is_regular_file(path_, failed)) return false;
  if (fs::exists(fs::symlink_status(kept, failed))) return true;
  fs::copy_file(path_, kept, failed);
  return !failed;
}

std::optional<Json> MemoryDefaults::value(const std::string& key) const {
  const std::lock_guard lock(mutex_);
  const Json* found = get::any(values_, key);
  return found ? std::optional(*found) : std::nullopt;
}

void MemoryDefaults::set(const std::string& key, const Json& value) {
  const std::lock_guard lock(mutex_);
  values_[key] = value;
}

void MemoryDefaults::remove(const std::string& key) {
  const std::lock_guard lock(mutex_);
  values_.erase(key);
}

}  // namespace zelvane
