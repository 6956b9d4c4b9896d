// Our entries among the hooks in Claude Code's settings: recognised, taken out, put in. Pure.
#pragma once

#include <array>
#include <string>
#include <string_view>

#include "core/json_file.h"

namespace zelvane {

/// A hook event that we listen to, and for which tools ("" where that means nothing).
struct HookEvent {
  std::string_view name;
  std::string_view matcher;
};

inline constexpr std::array<HookEvent, 7> hookEvents = {{{"SessionStart", ""},
                                                         {"UserPromptSubmit", ""},
                                                         {"Notification", ""},
                                                         {"Stop", ""},
                                                         {"SessionEnd", ""},
                                                         {"PreToolUse", "AskUserQuestion"},
                                                         {"PostToolUse", "*"}}};

/// An entry whose command holds this text is ours, whoever wrote it; nothing else is.
inline constexpr std::string_view hookMarker = "zelvane/hook.zsh";

/// What Claude Code runs at each event. Silent and always successful, whatever becomes of the
/// helper.
std::string hookCommand(const std::string& hookDir);

/// Whether some hook in the settings is ours.
bool hasOurEntries(const Json& settings);

/// Whether the value of "hooks" has a list, or nothing, at each of our events.
bool hasRoomForOurs(const Json& hooks);

// The next three take and return the value of "hooks", an object.

/// Without our entries, and without the containers that only they filled.
Json strip(Json hooks);
/// With exactly one group of ours, first, at each of our events.
Json withOurs(Json hooks, const std::string& command);
/// Without empty arrays.
Json dropEmpty(Json hooks);

/// The settings' hooks; an empty object when there are none or they are no object.
Json hooksOf(const Json& settings);

/// Whether two settings differ in our entries (and empty hook lists) only. Numbers compare by
/// value.
bool sameExceptOurs(const Json& a, const Json& b);

}  // namespace zelvane
