#include <algorithm>
#include <array>
#include <string_view>

#include "app/login/login_format.h"

namespace zelvane {
namespace {

struct Entity {
  std::string_view name;
  char character;
};
constexpr std::array<Entity, 5> entities = {
    {{"&amp;", '&'}, {"&lt;", '<'}, {"&gt;", '>'}, {"&quot;", '"'}, {"&apos;", '\''}}};

std::string escaped(const std::string& text) {
  std::string result;
  for (const char c : text) {
    const auto entity = std::find_if(entities.begin(), entities.end(),
                                     [&](const Entity& one) { return one.character == c; });
    if (entity == entities.end()) {
      result += c;
    } else {
      result += entity->name;
    }
  }
  return result;
}

/// Nothing when an entity is none of XML's own.
std::optional<std::string> unescaped(std::string_view text) {
  std::string result;
  while (!text.empty()) {
    if (text.front() != '&') {
      result += text.front();
      text.remove_prefix(1);
      continue;
    }
    const auto entity = std::find_if(entities.begin(), entities.end(),
                                     [&](const Entity& one) { return text.starts_with(one.name); });
    if (entity == entities.end()) return std::nullopt;
    result += entity->character;
    text.remove_prefix(entity->name.size());
  }
  return result;
}

void skipBlanks(std::string_view& text) {
  const auto begin = text.find_first_not_of(" \t\r\n");
  text.remove_prefix(begin == text.npos ? text.size() : begin);
}

/// Takes the word from the front, blanks before it included; false when something else stands
/// there.
bool take(std::string_view& text, std::string_view word) {
  skipBlanks(text);
  if (!text.starts_with(word)) return false;
  text.remove_prefix(word.size());
  return true;
}

}  // namespace

std::string launchAgentText(const std::string& app) {
  return R"(<?xml version="1.0" encoding="UTF-8"?>
<!DOCTYPE plist PUBLIC "-//Apple//DTD PLIST 1.0//EN" "http://www.apple.com/DTDs/PropertyList-1.0.dtd">
<plist version="1.0">
<dict>
	<key>Label</key>
	<string>com.tarnwick.zelvane</string>
	<key>ProgramArguments</key>
	<array>
		<string>/usr/bin/open</string>
		<string>-a</string>
		<string>)" +
         escaped(app) + R"(</string>
	</array>
	<key>RunAtLoad</key>
	<true/>
</dict>
</plist>
)";
}

std::optional<std::string> launchAgentTarget(const std::string& text) {
  constexpr std::string_view key = "<key>ProgramArguments</key>";
  const auto begin = text.find(key);
  if (begin == text.npos) return std::nullopt;
  std::string_view rest(text);
  rest.remove_prefix(begin + key.size());
  if (!take(rest, "<array>")) return std::nullopt;
  std::optional<std::string> last;
  while (!take(rest, "</array>")) {
    if (!take(rest, "<string>")) return std::nullopt;
    const auto end = rest.find('<');
    if (end == rest.npos) return std::nullopt;
    last = unescaped(rest.substr(0, end));
    rest.remove_prefix(end);
    if (!last || !take(rest, "</string>")) return std::nullopt;
  }
  return last;
}

}  // namespace zelvane
