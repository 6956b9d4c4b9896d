#include "platform/macos/argument_area.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

namespace zelvane::platform {
namespace {

/// Takes one text and its zero byte off the front; nothing when the area ends before.
std::optional<std::string_view> takeText(std::string_view& rest) {
  const auto end = rest.find('\0');
  if (end == rest.npos) return std::nullopt;
  const auto text = rest.substr(0, end);
  rest.remove_prefix(end + 1);
  return text;
}

/// The whole entries at the front, up to an empty one.
std::string_view entriesOf(std::string_view rest) {
  const std::string_view all = rest;
  while (const auto entry = takeText(rest)) {
    if (!entry->empty()) continue;
    rest = all.substr(static_cast<std::size_t>(entry->data() - all.data()));
    break;
  }
  const auto whole = all.substr(0, all.size() - rest.size());
  return whole.substr(0, whole.rfind('\0') + 1);
}

}  // namespace

std::optional<ArgumentArea> parseArgumentArea(std::string_view area) {
  std::int32_t count = 0;
  if (area.size() <= sizeof count) return std::nullopt;
  std::memcpy(&count, area.data(), sizeof count);
  area.remove_prefix(sizeof count);
  if (!takeText(area)) return std::nullopt;
  area.remove_prefix(std::min(area.find_first_not_of('\0'), area.size()));

  ArgumentArea found;
  do {
    const auto argument = takeText(area);
    if (!argument) break;
    found.arguments.push_back(*argument);
  } while (static_cast<std::int64_t>(found.arguments.size()) < count);
  if (found.arguments.empty() || found.arguments.front().empty()) return std::nullopt;
  const bool whole = static_cast<std::int64_t>(found.arguments.size()) >= count;
  if (whole) found.environment = entriesOf(area);
  return found;
}

}  // namespace zelvane::platform
