// Saved settings: typed values under names.
#pragma once

#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <string>

#include "core/file_identity.h"
#include "core/json_file.h"

namespace zelvane {

/// Where settings are kept. Values are JSON values, so that a reader sees their type and can treat
/// a value of another type as absent. Any thread.
class UserDefaults {
 public:
  virtual ~UserDefaults() = default;
  /// All saved values, as one object.
  virtual Json values() const = 0;
  /// The saved value; nothing when there is none.
  virtual std::optional<Json> value(const std::string& key) const;
  /// Saves the value. A failure is silent: settings are a convenience.
  virtual void set(const std::string& key, const Json& value) = 0;
  /// Saves several, given by name in an object; in one go, where that can be. Returns the version
  /// that a caller knows then who knew `known`: the new one, unless others changed something, too.
  virtual std::uint64_t setAll(Json values, std::uint64_t known);
  virtual void remove(const std::string& key) = 0;
  /// A number that changes with the values, whoever changes them.
  virtual std::uint64_t version() const = 0;
};

/// Settings in one JSON file. Several processes may write it: a write takes the file's lock and
/// changes its keys in what then lies there, or gives up when another holds the lock for a second.
/// A damaged file is kept aside before it is replaced; one that cannot be read is left alone. What
/// the file held is remembered, and parsed anew only after it changed.
class FileDefaults : public UserDefaults {
 public:
  explicit FileDefaults(std::string path) : path_(std::move(path)) {}
  Json values() const override;
  std::optional<Json> value(const std::string& key) const override;
  void set(const std::string& key, const Json& value) override;
  std::uint64_t setAll(Json values, std::uint64_t known) override;
  void remove(const std::string& key) override;
  std::uint64_t version() const override;

 private:
  struct Known {
    std::optional<FileIdentity> file;  ///< that holds this; nothing: none does
    Json values = Json::object();
  };

  std::optional<std::uint64_t> change(const std::function<bool(Json& settings)>& edit);
  const Json* current() const;
  Json* changeable();

  std::string path_;
  // One at a time: what is known, and the temporary file, whose name is the process's.
  mutable std::mutex alone_;
  mutable Known known_;
};

/// Settings in memory, for tests and for modes that save nothing.
class MemoryDefaults : public UserDefaults {
 public:
  MemoryDefaults() = default;
  explicit MemoryDefaults(Json values) : values_(std::move(values)) {}
  Json values() const override;
  void set(const std::string& key, const Json& value) override;
  void remove(const std::string& key) override;
  std::uint64_t version() const override;

 private:
  mutable std::mutex mutex_;
  std::uint64_t version_ = 1;
  Json values_ = Json::object();
};

}  // namespace zelvane
