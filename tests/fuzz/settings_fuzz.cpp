// Whatever lies in Claude Code's settings: taking our entries in and out gives them back by value,
// or they are refused.
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "core/installer/hook_entries.h"
#include "core/installer/settings_json.h"

using namespace zelvane;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  const bool twice = hasDuplicateKeys(bytes);
  const auto before = parseSettings(bytes);
  if (!before || twice) return 0;
  const Json* hooks = get::any(*before, "hooks");
  if (hooks && (!hooks->is_object() || !hasRoomForOurs(*hooks))) return 0;
  Json connected = *before;
  connected["hooks"] = withOurs(hooksOf(*before), hookCommand("/h/hooks/zelvane"));
  const auto text = settingsText(connected);
  if (!text || hasDuplicateKeys(*text)) std::abort();
  auto read = parseSettings(*text);
  if (!read || *read != connected || !hasOurEntries(*read) || !sameExceptOurs(*before, *read)) {
    std::abort();
  }
  (*read)["hooks"] = strip((*read)["hooks"]);
  const auto after = parseSettings(*settingsText(*read));
  if (!after || hasOurEntries(*after) || !sameExceptOurs(*before, *after)) std::abort();
  return 0;
}
