// Claude Code's settings.json: a file that is not ours. Read with care, edited in a transaction
// that leaves the old or the new file whole, whatever happens. No lock and no state; any thread.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <variant>

#include "core/json_file.h"
#include "core/time.h"

namespace zelvane {

/// How something that the user started ended, with one sentence for them.
struct Outcome {
  bool succeeded = false;
  std::string message;  ///< may be empty after success
  bool operator==(const Outcome&) const = default;

  static Outcome ok(std::string message) { return {true, std::move(message)}; }
  static Outcome failed(std::string message) { return {false, std::move(message)}; }
};

class SettingsFile {
 public:
  /// Settings that may be edited.
  struct Ready {
    Json settings;
    std::string data;  ///< the file's bytes
    std::string path;  ///< the file itself, links resolved: where to write
  };
  struct Refused {
    std::string message;
  };
  struct Absent {};
  using Read = std::variant<Ready, Refused, Absent>;

  /// The settings in a Claude folder.
  explicit SettingsFile(std::string claudeDir, Clock clock = systemTime)
      : claudeDir_(std::move(claudeDir)), clock_(std::move(clock)) {}

  /// Where the file is expected.
  std::string path() const { return claudeDir_ + "/settings.json"; }
  /// Where it is: the same with all links resolved; nothing when it is nowhere.
  std::optional<std::string> realPath() const;

  /// The settings, to be looked at only; nothing when there are none that can be read.
  std::optional<Json> read() const;
  /// The settings, to be edited; refused when anything about the file is doubtful.
  Read readForEdit() const;
  /// Edits the settings. Every failure leaves the file as it was, byte for byte, and says so; an
  /// edit that changes nothing writes nothing. What another program writes at the same moment stays
  /// in place or, where it cannot, beside the file in
  /// "settings.json.zelvane-theirs-TIME-PROCESSID".
  Outcome edit(const std::function<void(Json& settings)>& change) const;

  /// For tests: called once per attempt, between reading and editing.
  std::function<void()> testBeforeWrite;

 private:
  struct Attempt;
  std::optional<Outcome> attempt(const std::function<void(Json& settings)>& change) const;
  std::optional<Outcome> begin(Attempt& attempt) const;
  bool untouched(const Attempt& attempt) const;
  std::optional<Outcome> replace(const Attempt& attempt) const;
  std::optional<Outcome> verify(const Attempt& attempt) const;
  std::optional<std::string> rollBack(const Attempt& attempt) const;
  std::optional<std::string> takeAway(const std::string& path, const Attempt& attempt) const;
  std::optional<std::string> copyOfTheirs(const Attempt& attempt) const;
  std::string nameNow(const std::string& start) const;
  void pruneBackups() const;

  std::string claudeDir_;
  Clock clock_;
};

}  // namespace zelvane
