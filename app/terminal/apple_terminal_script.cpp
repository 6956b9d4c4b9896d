#include "app/terminal/apple_terminal_script.h"

#include <algorithm>

#include "core/text.h"
#include "core/unicode.h"

#include "app/terminal/place.h"

namespace zelvane::AppleTerminal {
namespace {

std::string withoutMargins(std::string_view output) {
  auto text = scalars(output);
  while (!text.empty() && isWhitespace(text.back())) text.pop_back();
  std::size_t start = 0;
  while (start < text.size() && isWhitespace(text[start])) ++start;
  return utf8(std::u32string_view(text).substr(start));
}

}  // namespace

std::string listScript() {
  return R"(set out to ""
set TB to character id 9
tell application "Terminal"
  repeat with w in windows
    repeat with t in tabs of w
      set out to out & (tty of t) & TB & (custom title of t) & linefeed
    end repeat
  end repeat
end tell
return out)";
}

std::string frontScript() {
  return R"(tell application "Terminal" to return tty of selected tab of front window)";
}

std::string selectScript(std::string_view tty) {
  constexpr std::string_view head = R"(tell application "Terminal"
  repeat with w in windows
    repeat with t in tabs of w
      if tty of t is ")";
  constexpr std::string_view tail = R"(" then
        set selected of t to true
        set index of w to 1
        activate
        return
      end if
    end repeat
  end repeat
end tell)";
  return std::string(head) + sanitized(tty) + std::string(tail);
}

std::string openTabScript(std::string_view shellCommand) {
  // The key by its place: by its letter it would be another one while Korean is typed. Whatever it
  // did, only a tab that was not there before is typed into.
  constexpr std::string_view rest = R"(
set old to {}
tell application "Terminal"
  repeat with w in windows
    repeat with t in tabs of w
      set end of old to tty of t
    end repeat
  end repeat
  activate
  if old is {} then
    do script typed
    return
  end if
  repeat 20 times
    if frontmost then exit repeat
    delay 0.1
  end repeat
  if not frontmost then error "not in front"
end tell
tell application "System Events" to key code 17 using command down
tell application "Terminal"
  repeat 20 times
    delay 0.1
    set t to selected tab of front window
    if old does not contain (tty of t) then
      do script typed in t
      return
    end if
  end repeat
end tell
error "no new tab")";
  return "set typed to " + appleScriptString(shellCommand) + std::string(rest);
}

std::string openWindowScript(std::string_view shellCommand) {
  return "tell application \"Terminal\"\n  activate\n  do script " +
         appleScriptString(shellCommand) + "\nend tell";
}

std::string frontApplicationScript() {
  return "return id of application (path to frontmost application as text)";
}

std::string sanitized(std::string_view tty) {
  std::u32string kept;
  // By characters as people see them: a mark goes with what it stands on.
  const auto all = scalars(tty);
  std::u32string_view rest = all;
  while (!rest.empty()) {
    const auto character = rest.substr(0, std::max<std::size_t>(firstCharacterLength(rest), 1));
    if (character == U"/" || isAlphanumeric(character.front())) kept += character;
    rest.remove_prefix(character.size());
  }
  return utf8(kept);
}

std::map<std::string, std::string> parseTitles(std::string_view output) {
  std::map<std::string, std::string> titles;
  for (const auto line : pieces(output, '\n')) {
    const auto tab = line.find('\t');
    if (tab == line.npos) continue;
    titles[std::string(line.substr(0, tab))] = line.substr(tab + 1);
  }
  return titles;
}

std::optional<std::string> parseFront(std::string_view output) {
  auto tty = withoutMargins(output);
  return tty.starts_with("/dev/") ? std::optional(std::move(tty)) : std::nullopt;
}

std::string parseIdentifier(std::string_view output) { return withoutMargins(output); }

}  // namespace zelvane::AppleTerminal
