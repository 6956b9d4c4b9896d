// The settings that the store begins with.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "core/time.h"
#include "core/user_defaults.h"

#include "app/model/records/theme_id.h"

namespace zelvane {

struct SavedSettings {
  ThemeID theme = ThemeID::c;
  bool anchorTop = true;
  std::vector<std::string> pinned;
  std::map<std::string, double> acked;  ///< seconds since 1970; of the last seven days
  std::map<std::string, std::int64_t> friendOf;
  std::map<std::string, double> friendSeen;
};

/// Reads them; a value of another type counts as absent.
SavedSettings savedSettings(const UserDefaults& userDefaults, Time now);

/// Of these, two that are often asked for alone.
std::vector<std::string> savedPins(const UserDefaults& userDefaults);
std::map<std::string, double> savedAcked(const UserDefaults& userDefaults, Time now);

/// The pins with the session at their end, or without it when it was pinned.
std::vector<std::string> pinsToggled(std::vector<std::string> pins, const std::string& id);

/// Adds acknowledgements, the later of two for one session; whether that changed anything.
bool mergeAcked(std::map<std::string, double>& acked, const std::map<std::string, double>& others);

/// Saves acknowledgements together with those that others have saved.
void saveAcked(UserDefaults& userDefaults, std::map<std::string, double> acked, Time now);

}  // namespace zelvane
