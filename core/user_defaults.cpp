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
bool put(Json& settings, const std::string& key, Json value) {
  const auto place = settings.find(key);
  if (place != settings.end() && *place == value) return false;
  settings[key] = std::move(value);
  return true;
}

std::optional<Json> valueIn(const Json& settings, const std::string& key) {
  const Json* found = get::any(settings, key);
  return found ? std::optional(*found) : std::nullopt;
}

}  // namespace

std::optional<Json> UserDefaults::value(const std::string& key) const {
  return valueIn(values(), key);
}

std::uint64_t UserDefaults::setAll(Json values, std::uint64_t known) {
  for (const auto& [key, value] : values.items()) set(key, value);
  return known;
}

Json FileDefaults::values() const {
  const std::lock_guard lock(alone_);
  const Json* settings = current();
  return settings ? *settings : Json::object();
}

std::optional<Json> FileDefaults::value(const std::string& key) const {
  const std::lock_guard lock(alone_);
  const Json* settings = current();
  return settings ? valueIn(*settings, key) : std::nullopt;
}

void FileDefaults::set(const std::string& key, const Json& value) {
  change([&](Json& settings) { return put(settings, key, value); });
}

std::uint64_t FileDefaults::setAll(Json values, std::uint64_t known) {
  bool knewAll = false;
  const auto after = change([&](Json& settings) {
    knewAll = version() == known;
    bool changed = false;
    for (auto& [key, value] : values.items()) {
      changed = put(settings, key, std::move(value)) || changed;
    }
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

/// What the file holds; null when there is none, or none with settings.
const Json* FileDefaults::current() const {
  const auto now = fileIdentity(path_);
  if (now && known_.file == now) return &known_.values;
  auto settings = JSONFile::load(path_, largestSettings);
  if (!settings) return nullptr;
  known_ = {now, std::move(*settings)};
  return &known_.values;
}

/// `edit` tells whether it changed anything. The version afterwards; nothing when nothing could be
/// changed.
std::optional<std::uint64_t> FileDefaults::change(const std::function<bool(Json& settings)>& edit) {
  const std::lock_guard alone(alone_);
  std::error_code failed;
  fs::create_directories(fs::path(path_).parent_path(), failed);
  const FileLock::Scope lock(path_ + ".lock", lockPatience);
  Json* settings = lock ? changeable() : nullptr;
  if (!settings) return std::nullopt;
  if (edit(*settings)) {
    known_.file.reset();
    // A link stays one: what it leads to is replaced.
    const auto target = fs::canonical(path_, failed);
    const bool written = JSONFile::writeAtomic(*settings, failed ? path_ : target.string());
    if (written) known_.file = fileIdentity(path_);
  }
  return version();
}

/// What is known, made ready to be changed: the file's settings, or none when there are none yet or
/// a damaged file was kept aside. Null when a file is there that must not be replaced.
Json* FileDefaults::changeable() {
  if (current()) return &known_.values;
  std::error_code failed;
  if (fs::exists(fs::symlink_status(path_, failed))) {
    if (!readFile(path_, largestSettings)) return nullptr;
    const std::string kept = path_ + ".damaged";
    if (!fs::exists(fs::symlink_status(kept, failed))) fs::copy_file(path_, kept, failed);
    if (failed) return nullptr;
  }
  known_ = {};
  return &known_.values;
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
