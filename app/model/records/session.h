// One row of the column: what is shown for one running Claude Code process.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "core/time.h"

namespace zelvane {

/// What a session is doing. The raw values order the rows; the first three are ongoing.
enum class ZelvaneState : std::int32_t {
  waiting = 0,  ///< Claude asks the user for a permission or an answer
  working = 1,  ///< Claude is busy with a turn
  agents = 2,   ///< the turn is over, background agents or shells still run
  done = 3,     ///< a turn has finished and the user has not looked at it yet
  idle = 4,     ///< nothing to report
};

/// The state with the raw value; nothing outside of 0 to 4.
constexpr std::optional<ZelvaneState> stateFromRawValue(std::int32_t rawValue) {
  if (rawValue < 0 || rawValue > 4) return std::nullopt;
  return static_cast<ZelvaneState>(rawValue);
}

struct ZelvaneSession {
  /// To-do progress; `total` is above 0.
  struct Progress {
    std::int64_t done = 0;
    std::int64_t total = 0;
    bool operator==(const Progress&) const = default;
  };

  std::string id;  ///< Claude Code's session id; two rows can share one, their pids differ
  std::int32_t pid = 0;
  std::optional<std::string> tty;  ///< terminal device path, "/dev/…"
  std::string terminal;            ///< program that draws the tab, or "tmux"; empty when unknown
  std::string cwd;                 ///< working folder, empty when unknown
  std::string title;               ///< the user's title when there is one, else `claudeTitle`
  std::string subtitle;
  ZelvaneState state = ZelvaneState::idle;
  std::optional<Time> since;  ///< when the state began; for `idle` the session file's last update
  std::optional<Progress> progress;  ///< only while `working`
  std::int64_t friendIndex = 0;      ///< which pixel character; 0 when none was assigned
  std::string claudeTitle;           ///< the title without a user's: tab title, prompt or folder
  bool renamed = false;              ///< the user gave a title
  std::optional<std::string> memo;   ///< the user's
  std::string model;                 ///< display name, empty when unknown
  std::string effort;                ///< as the client writes it, empty when unknown
  std::string suggestedEffort;       ///< empty for none
  bool pinned = false;
  bool today = false;  ///< `since` lies in the current day, which begins at 04:00

  bool operator==(const ZelvaneSession&) const = default;
  bool ongoing() const { return state < ZelvaneState::done; }
};

}  // namespace zelvane
