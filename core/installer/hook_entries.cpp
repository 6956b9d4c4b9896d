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
  auto& list = group["hooks"].get_ref<Json::array_t&>();
  std::erase_if(list, isOurs);
  return !list.empty();
}

/// Whether all but the hooks is the same.
bool sameOtherwise(const Json& a, const Json& b) {
  const auto others = [](const Json& settings) {
    return settings.size() - settings.count("hooks");
  };
  const auto items = a.items();
  return others(a) == others(b) && std::all_of(items.begin(), items.end(), [&](const auto& item) {
           const auto its = b.find(item.key());
           return item.key() == "hooks" || (its != b.end() && *its == item.value());
         });
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

Json strip(Json hooks) {
  Json result = Json::object();
  for (auto& [event, groups] : hooks.items()) {
    if (!groups.is_array() || groups.empty()) {
      result[event] = std::move(groups);
      continue;
    }
    Json kept = Json::array();
    for (Json& group : groups) {
      if (stripGroup(group)) kept.push_back(std::move(group));
    }
    if (!kept.empty()) result[event] = std::move(kept);
  }
  return result;
}

bool hasRoomForOurs(const Json& hooks) {
  return std::all_of(hookEvents.begin(), hookEvents.end(), [&](const HookEvent& event) {
    const Json* groups = get::any(hooks, std::string(event.name));
    return !groups || groups->is_array();
  });
}

Json withOurs(Json hooks, const std::string& command) {
  Json result = strip(std::move(hooks));
  for (const auto& event : hookEvents) {
    Json& groups = result[std::string(event.name)];
    if (!groups.is_array()) groups = Json::array();
    groups.insert(groups.begin(), ourGroup(event, command));
  }
  return result;
}

Json dropEmpty(Json hooks) {
  std::erase_if(hooks.get_ref<Json::object_t&>(), [](const auto& member) {
    return member.second.is_array() && member.second.empty();
  });
  return hooks;
}

Json hooksOf(const Json& settings) {
  const Json* hooks = get::dict(settings, "hooks");
  return hooks ? *hooks : Json::object();
}

bool sameExceptOurs(const Json& a, const Json& b) {
  return sameOtherwise(a, b) && dropEmpty(strip(hooksOf(a))) == dropEmpty(strip(hooksOf(b)));
}

}  // namespace zelvane
