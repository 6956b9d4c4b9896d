// The short texts of a row, made from what Claude Code, terminals and hook records say. Pure.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "core/time.h"

#include "app/model/records/session.h"

namespace zelvane {

/// Display name of a model identifier: "claude-opus-4-1-20250805" reads "Opus 4.1".
std::string modelName(std::string_view id);

/// Display name of an effort level: "high" reads "High", "xhigh" reads "XHigh".
std::string effortName(std::string_view level);

/// A terminal tab's title without Claude Code's status glyph; empty for Claude Code's default one.
std::string cleanTitle(std::string_view raw);

/// A prompt on one line, without attachment markers; empty for blocks that no person typed.
std::string cleanPrompt(std::string_view raw);

/// Why Claude waits, as shown to the user.
std::string localizedReason(const std::string& reason);

/// How long ago, or for how long when the state still lasts; empty without a time.
std::string elapsedText(std::optional<Time> since, bool ongoing, Time now);

/// How long a turn runs, as 0:59, 59:59 or 1:00:00.
std::string workingTime(Seconds elapsed);

/// The start, at 04:00 local time, of the day that contains the time.
Time todayStart(Time time);

/// The label of a state: "확인 필요", "작업 중", …
std::string stateLabel(ZelvaneState state);

}  // namespace zelvane
