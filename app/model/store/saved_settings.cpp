#include "app/model/store/saved_settings.h"

#include <algorithm>

namespace zelvane {
namespace {

constexpr Seconds ackedLifetime(604'800);

/// A map of text to numbers: all of it, or empty when any value is something else.
template <typename Number>
std::map<std::string, Number> numbers(const UserDefaults& userDefaults, const std::string& key) {
  const auto value = userDefaults.value(key);
  const auto isNumber = [](const Json& item) {
    return std::is_floating_point_v<Number> ? item.is_number() : item.is_number_integer();
  };
  if (!value || !value->is_object() || !std::all_of(value->begin(), value->end(), isNumber)) {
    return {};
  }
  return value->get<std::map<std::string, Number>>();
}

}  // namespace

SavedSettings savedSettings(const UserDefaults& userDefaults, Time now) {
  SavedSettings settings;
  const auto theme = userDefaults.value("theme");
  if (theme && theme->is_string()) {
    settings.theme = themeFromRawValue(theme->get<std::string>()).value_or(ThemeID::c);
  }
  const auto anchorTop = userDefaults.value("anchorTop");
  if (anchorTop && anchorTop->is_boolean()) settings.anchorTop = anchorTop->get<bool>();
  settings.pinned = savedPins(userDefaults);
  settings.acked = savedAcked(userDefaults, now);
  settings.friendOf = numbers<std::int64_t>(userDefaults, "friendOf");
  settings.friendSeen = numbers<double>(userDefaults, "friendSeen");
  // What was saved without a time has been seen at least once, by now.
  for (const auto& entry : settings.friendOf) {
    settings.friendSeen.try_emplace(entry.first, secondsSince1970(now));
  }
  return settings;
}

std::vector<std::string> savedPins(const UserDefaults& userDefaults) {
  const auto value = userDefaults.value("pinned");
  const auto isText = [](const Json& item) { return item.is_string(); };
  if (!value || !value->is_array() || !std::all_of(value->begin(), value->end(), isText)) return {};
  return value->get<std::vector<std::string>>();
}

std::map<std::string, double> savedAcked(const UserDefaults& userDefaults, Time now) {
  auto acked = numbers<double>(userDefaults, "acked");
  std::erase_if(acked,
                [&](const auto& entry) { return now - timeAt(entry.second) > ackedLifetime; });
  return acked;
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
  mergeAcked(acked, savedAcked(userDefaults, now));
  userDefaults.set("acked", acked);
}

}  // namespace zelvane
