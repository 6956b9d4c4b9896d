// What files said when they were last read: one that lies as it did costs a look at its attributes.
// One thread at a time.
#pragma once

#include <cmath>
#include <map>
#include <optional>
#include <string>
#include <utility>

#include "core/file_identity.h"
#include "core/time.h"

namespace zelvane {

template <typename Value>
class UnchangedFiles {
 public:
  /// What `read` makes of the path, now or when it last did and the file was the same; nothing when
  /// `read` fails. A file that was written within two seconds is read again: its times may be too
  /// coarse to tell a further write. Each new `now` begins a round, and forgets what was not asked
  /// for in the last.
  template <typename Read>
  const std::optional<Value>& of(const std::string& path, Time now, const Read& read) {
    if (now != now_) {
      std::erase_if(files_, [&](const auto& entry) { return entry.second.askedAt != now_; });
      now_ = now;
    }
    File& file = files_[path];
    file.askedAt = now;
    const auto identity = fileIdentity(path);
    if (identity && identity == file.identity) return file.value;
    file.value = read(path);
    const bool lasts = file.value && identity && isSettled(*identity);
    file.identity = lasts ? identity : std::nullopt;
    return file.value;
  }

 private:
  struct File {
    std::optional<FileIdentity> identity;  ///< nothing: to be read again
    Time askedAt = distantPast;
    std::optional<Value> value;
  };

  bool isSettled(const FileIdentity& identity) const {
    const auto written = static_cast<double>(identity.modified) / 1e9;
    return std::abs(secondsSince1970(now_) - written) > 2;
  }

  std::map<std::string, File> files_;
  Time now_ = distantPast;
};

}  // namespace zelvane
