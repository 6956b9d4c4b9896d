#include "core/installer/hook_entries.h"

#include <algorithm>

namespace zelvane {
namespace {

constexpr int timeLimit = 5;  // seconds

bool isOurs(const Json& entry) {
  return get::str(entry, "command").value_or("").find(hookMarker) != std::string::npos;
}

Json ourGroup(const HookEvent& event, const std::string& command) {
  Json group = {{"hooks", {{{"type", "command"}, {"command", command}, {"timeout", timeLimit}}}}};
  if (!event.matcher.empty()) group["matcher"] = event.matcher;
  return group;
}

/// Takes our entries out of a group. False when nothing else was in it.
bool stripGroup(Json& group) {
  const Json* entries = get::list(group, "hooks");
  if (!entries || entries->empty()) return true;
  Json kept = Json::array();
  std::copy_if(entries->begin(), entries->end(), std::back_inserter(kept),
               [](const Json& entry) { return !isOurs(entry); });
  const bool stays = !kept.empty();
  group["hooks"] = std::move(kept);
  return stays;
}

}  // namespace

std::string hookCommand(const std::string& hookDir) {
  return "/bin/zsh -f \"" + hookDir + "/hook.zsh\" 2>/dev/null; exit 0";
}

bool hasOurEntries(const Json& settings) {
  for (const auto& groups : hooksOf(settings)) {
    if (!groups.is_array()) continue;
    for (const auto& group : groups) {
      const Json* entries = get::list(group, "hooks");
      if (entries && std::any_of(entries->begin(), entries->end(), isOurs)) return true;
    }
  }
  return false;
}

Json strip(const Json& hooks) {
  Json result = Json::object();
  for (const auto& [event, groups] : hooks.items()) {
    if (!groups.is_array()) {
      result[event] = groups;
      continue;
    }
    Json kept = Json::array();
    for (Json group : groups) {
      if (stripGroup(group)) kept.push_back(std::move(group));
    }
    if (!kept.empty() || groups.empty()) result[event] = std::move(kept);
  }
  return result;
}

bool hasRoomForOurs(const Json& hooks) {
  return std::all_of(hookEvents.begin(), hookEvents.end(), [&](const HookEvent& event) {
    const Json* groups = get::any(hooks, std::string(event.name));
    return !groups || groups->is_array();
  });
}

Json withOurs(const Json& hooks, const std::string& command) {
  Json result = strip(hooks);
  for (const auto& event : hookEvents) {
    const std::string name(event.name);
    Json groups = Json::array({ourGroup(event, command)});
    if (const Json* others = get::list(result, name)) {
      groups.insert(groups.end(), others->begin(), others->end());
    }
    result[name] = std::move(groups);
  }
  return result;
}

Json dropEmpty(const Json& hooks) {
  Json result = Json::object();
  for (const auto& [event, groups] : hooks.items()) {
    if (!groups.is_array() || !groups.empty()) result[event] = groups;
  }
  return result;
}

Json hooksOf(const Json& settings) {
  const Json* hooks = get::dict(settings, "hooks");
  return hooks ? *hooks : Json::object();
}

bool sameExceptOurs(const Json& a, const Json& b) {
  const auto rest = [](Json settings) {
    settings.erase("hooks");
    return settings;
  };
  return rest(a) == rest(b) && dropEmpty(strip(hooksOf(a))) == dropEmpty(strip(hooksOf(b)));
}

}  // namespace zelvane
