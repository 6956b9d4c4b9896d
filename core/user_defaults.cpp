#include "core/user_defaults.h"

#include <filesystem>
#include <sys/stat.h>

#include "core/file_lock.h"

namespace zelvane {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t largestSettings = std::size_t{4} << 20;
constexpr Seconds lockPatience(1);

/// Whether that changed anything.
bool put(Json& settings, const std::string& key, const Json& value) {
  Json& place = settings[key];
  if (place == value) return false;
  place = value;
  return true;
}

}  // namespace

std::optional<Json> UserDefaults::value(const std::string& key) const {
  const Json all = values();
  const Json* found = get::any(all, key);
  return found ? std::optional(*found) : std::nullopt;
}

std::uint64_t UserDefaults::setAll(const Json& values, std::uint64_t known) {
  for (const auto& [key, value] : values.items()) set(key, value);
  return known;
}

Json FileDefaults::values() const {
  return JSONFile::load(path_, largestSettings).value_or(Json::object());
}

void FileDefaults::set(const std::string& key, const Json& value) {
  change([&](Json& settings) { return put(settings, key, value); });
}

std::uint64_t FileDefaults::setAll(const Json& values, std::uint64_t known) {
  bool knewAll = false;
  const auto after = change([&](Json& settings) {
    knewAll = version() == known;
    bool changed = false;
    for (const auto& [key, value] : values.items()) changed = put(settings, key, value) || changed;
    return changed;
  });
  return after && knewAll ? *after : known;
}

void FileDefaults::remove(const std::string& key) {
  change([&](Json& settings) { return settings.erase(key) > 0; });
}

/// The file is replaced as a whole: a new one has another inode or time.
std::uint64_t FileDefaults::version() const {
  struct stat info {};
  if (stat(path_.c_str(), &info) != 0) return 0;
  std::error_code failed;
  const auto time = fs::last_write_time(path_, failed).time_since_epoch().count();
  return static_cast<std::uint64_t>(time) ^ info.st_ino << 1 ^
         static_cast<std::uint64_t>(info.st_size) << 40;
}

/// `edit` tells whether it changed anything. The version afterwards; nothing when nothing could be
/// changed.
std::optional<std::uint64_t> FileDefaults::change(const std::function<bool(Json& settings)>& edit) {
  const std::lock_guard alone(writing_);
  std::error_code failed;
  fs::create_directories(fs::path(path_).parent_path(), failed);
  const FileLock::Scope lock(path_ + ".lock", lockPatience);
  auto settings = lock ? changeable() : std::nullopt;
  if (!settings) return std::nullopt;
  if (edit(*settings)) {
    // A link stays one: what it leads to is replaced.
    const auto target = fs::canonical(path_, failed);
    (void)JSONFile::writeAtomic(*settings, failed ? path_ : target.string());
  }
  return version();
}

/// The settings as they are to be changed: none yet, those of the file, or none after a damaged
/// file was kept aside. Nothing when a file is there that must not be replaced.
std::optional<Json> FileDefaults::changeable() const {
  std::error_code failed;
  if (!fs::exists(fs::symlink_status(path_, failed))) return Json::object();
  const auto text = readFile(path_, largestSettings);
  if (!text) return std::nullopt;
  auto settings = parseJson(*text);
  if (settings && settings->is_object()) return settings;
  const std::string kept = path_ + ".damaged";
  if (!fs::exists(fs::symlink_status(kept, failed))) fs::copy_file(path_, kept, failed);
  if (failed) return std::nullopt;
  return Json::object();
}

Json MemoryDefaults::values() const {
  const std::lock_guard lock(mutex_);
  return values_;
}

void MemoryDefaults::set(const std::string& key, const Json& value) {
  const std::lock_guard lock(mutex_);
  values_[key] = value;
  ++version_;
}

void MemoryDefaults::remove(const std::string& key) {
  const std::lock_guard lock(mutex_);
  values_.erase(key);
  ++version_;
}

std::uint64_t MemoryDefaults::version() const {
  const std::lock_guard lock(mutex_);
  return version_;
}

}  // namespace zelvane
