#include "core/localization.h"

#include <algorithm>

namespace zelvane {
namespace {

auto& stringTable() {
  static std::map<std::string, std::string, std::less<>> table;
  return table;
}

std::string shown(const FormatArgument& argument, std::size_t width) {
  if (const auto* text = std::get_if<std::string>(&argument)) return *text;
  auto digits = std::to_string(std::get<std::int64_t>(argument));
  if (digits.size() < width) digits.insert(0, width - digits.size(), '0');
  return digits;
}

}  // namespace

std::string L(std::string_view key) {
  const auto found = stringTable().find(key);
  return found == stringTable().end() ? std::string(key) : found->second;
}

std::string LF(std::string_view key, const std::vector<FormatArgument>& arguments) {
  const std::string format = L(key);
  std::string result;
  auto next = arguments.begin();
  for (std::size_t i = 0; i < format.size(); ++i) {
    if (format[i] != '%') {
      result += format[i];
      continue;
    }
    const auto end = format.find_first_not_of("0123456789", i + 1);
    const char kind = end == format.npos ? '\0' : format[end];
    if (kind == '%') {
      result += '%';
    } else if ((kind == '@' || kind == 'd') && next != arguments.end()) {
      const auto digits = format.substr(i + 1, end - i - 1);
      result +=
          shown(*next++, digits.empty() ? 0 : std::min(std::stoul(digits.substr(0, 2)), 40UL));
    } else {
      result += '%';
      continue;
    }
    i = end;
  }
  return result;
}

void setStringTable(std::map<std::string, std::string, std::less<>> table) {
  stringTable() = std::move(table);
}

}  // namespace zelvane
