#include "app/model/store/saved_settings.h"

#include <algorithm>

namespace zelvane {
namespace {

constexpr Seconds ackedLifetime(604'800);

/// A map of text to numbers: all of it, or empty when any value is something else.
template <typename Number>
std::map<std::string, Number> numbers(const Json& defaults, const std::string& key) {
  const Json* value = get::dict(defaults, key);
  const auto isNumber = [](const Json& item) {
    return std::is_floating_point_v<Number> ? item.is_number() : item.is_number_integer();
  };
  if (!value || !std::all_of(value->begin(), value->end(), isNumber)) {
    return {};
  }
  return value->get<std::map<std::string, Number>>();
}

std::vector<std::string> texts(const Json& defaults, const std::string& key) {
  const Json* value = get::list(defaults, key);
  const auto isText = [](const Json& item) { return item.is_string(); };
  if (!value || !std::all_of(value->begin(), value->end(), isText)) return {};
  return value->get<std::vector<std::string>>();
}

}  // namespace

SavedSettings savedSettings(const UserDefaults& userDefaults, Time now) {
  const Json defaults = userDefaults.values();
  SavedSettings settings;
  const auto theme = get::str(defaults, "theme");
  settings.theme = themeFromRawValue(theme.value_or("")).value_or(ThemeID::c);
  const Json* anchorTop = get::any(defaults, "anchorTop");
  if (anchorTop && anchorTop->is_boolean()) settings.anchorTop = anchorTop->get<bool>();
  settings.pinned = texts(defaults, "pinned");
  settings.acked = numbers<double>(defaults, "acked");
  std::erase_if(settings.acked,
                [&](const auto& entry) { return now - timeAt(entry.second) > ackedLifetime; });
  settings.friendOf = numbers<std::int64_t>(defaults, "friendOf");
  settings.friendSeen = numbers<double>(defaults, "friendSeen");
  // What was saved without a time has been seen at least once, by now.
  for (const auto& entry : settings.friendOf) {
    settings.friendSeen.try_emplace(entry.first, secondsSince1970(now));
  }
  return settings;
}

std::vector<std::string> pinsToggled(std::vector<std::string> pins, const std::string& id) {
  const auto found = std::find(pins.begin(), pins.end(), id);
  if (found != pins.end()) {
    pins.erase(found);
  } else {
    pins.push_back(id);
  }
  return pins;
}

bool mergeAcked(std::map<std::string, double>& acked, const std::map<std::string, double>& others) {
  bool changed = false;
  for (const auto& [id, at] : others) {
    auto& own = acked.try_emplace(id, 0).first->second;
    changed = changed || at > own;
    own = std::max(own, at);
  }
  return changed;
}

void saveAcked(UserDefaults& userDefaults, std::map<std::string, double> acked, Time now) {
  mergeAcked(acked, savedSettings(userDefaults, now).acked);
  userDefaults.set("acked", acked);
}

}  // namespace zelvane
