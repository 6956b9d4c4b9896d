// The settings that the system keeps for the user's programs, as JSON texts. Any thread.
#pragma once

#include <string>

namespace zelvane::platform {

/// All settings of the program with this bundle identifier, as one JSON object with its keys in
/// order; empty when there are none. What JSON cannot say (dates, bytes) is left out.
std::string preferences(const std::string& program);

/// Saves the value, any JSON text but null, under the key, and hands it to the system before it
/// returns. Nothing happens when the text is no such value.
void setPreference(const std::string& program, const std::string& key, const std::string& json);

void removePreference(const std::string& program, const std::string& key);

}  // namespace zelvane::platform
