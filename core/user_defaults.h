// Saved settings: typed values under names.
#pragma once

#include <memory>
#include <mutex>
#include <optional>
#include <string>

#include "core/json_file.h"

namespace zelvane {

/// Where settings are kept. Values are JSON values, so that a reader sees their type and can treat
/// a value of another type as absent. Any thread.
class UserDefaults {
 public:
  virtual ~UserDefaults() = default;
  /// The saved value; nothing when there is none.
  virtual std::optional<Json> value(const std::string& key) const = 0;
  /// Saves the value. A failure is silent: settings are a convenience.
  virtual void set(const std::string& key, const Json& value) = 0;
  virtual void remove(const std::string& key) = 0;
};

/// Settings in one JSON file. Several processes may write it: a write takes the file's lock and
/// changes one key of what then lies there. A damaged file is kept aside before it is replaced.
class FileDefaults : public UserDefaults {
 public:
  explicit FileDefaults(std::string path) : path_(std::move(path)) {}
  std::optional<Json> value(const std::string& key) const override;
  void set(const std::string& key, const Json& value) override;
  void remove(const std::string& key) override;

  /// The file of this user's settings: zelvane/settings.json in the XDG configuration folder.
  static std::string standardPath();

 private:
  void change(const std::function<void(Json& settings)>& edit);
  bool mayReplace() const;

  std::string path_;
  std::mutex writing_;  ///< the temporary file's name is the process's, not the thread's
};

/// Settings in memory, for tests and for modes that save nothing.
class MemoryDefaults : public UserDefaults {
 public:
  MemoryDefaults() = default;
  explicit MemoryDefaults(Json values) : values_(std::move(values)) {}
  std::optional<Json> value(const std::string& key) const override;
  void set(const std::string& key, const Json& value) override;
  void remove(const std::string& key) override;

 private:
  mutable std::mutex mutex_;
  Json values_ = Json::object();
};

}  // namespace zelvane
