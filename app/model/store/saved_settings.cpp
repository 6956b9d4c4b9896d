#include "app/model/store/saved_settings.h"

#include <algorithm>

namespace zelvane {
namespace {

constexpr Seconds ackedLifetime(604'800);

/// A map of text to numbers: all of it, or empty when any value is something else.
template <typename Number>
std::map<std::string, Number> numbers(const UserDefaults& defaults, const std::string& key) {
  const auto value = defaults.value(key);
  const auto isNumber = [](const Json& item) {
    return std::is_floating_point_v<Number> ? item.is_number() : item.is_number_integer();
  };
  if (!value || !value->is_object() || !std::all_of(value->begin(), value->end(), isNumber)) {
    return {};
  }
  return value->get<std::map<std::string, Number>>();
}

std::vector<std::string> texts(const UserDefaults& defaults, const std::string& key) {
  const auto value = defaults.value(key);
  const auto isText = [](const Json& item) { return item.is_string(); };
  if (!value || !value->is_array() || !std::all_of(value->begin(), value->end(), isText)) return {};
  return value->get<std::vector<std::string>>();
}

}  // namespace

SavedSettings savedSettings(const UserDefaults& defaults, Time now) {
  SavedSettings settings;
  const auto theme = defaults.value("theme");
  if (theme && theme->is_string()) {
    settings.theme = themeFromRawValue(theme->get<std::string>()).value_or(ThemeID::c);
  }
  const auto anchorTop = defaults.value("anchorTop");
  if (anchorTop && anchorTop->is_boolean()) settings.anchorTop = anchorTop->get<bool>();
  settings.pinned = texts(defaults, "pinned");
  settings.acked = numbers<double>(defaults, "acked");
  std::erase_if(settings.acked,
                [&](const auto& entry) { return now - timeAt(entry.second) > ackedLifetime; });
  settings.friendOf = numbers<std::int64_t>(defaults, "friendOf");
  settings.friendSeen = numbers<double>(defaults, "friendSeen");
  return settings;
}

}  // namespace zelvane
