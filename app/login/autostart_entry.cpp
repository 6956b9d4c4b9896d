#include <string_view>

#include "app/login/login_format.h"

namespace zelvane {
namespace {

constexpr std::string_view execKey = "\nExec=\"";

}  // namespace

// The program stands in double quotes, where four characters are escaped by a backslash; a value's
// backslashes are doubled once more, and a percent sign is doubled.
std::string autostartText(const std::string& app) {
  std::string program;
  for (const char c : app) {
    if (c == '"' || c == '`' || c == '$') {
      program += "\\\\";
    } else if (c == '\\') {
      program += "\\\\\\";
    } else if (c == '%') {
      program += '%';
    }
    program += c;
  }
  return "[Desktop Entry]\nType=Application\nName=Zelvane\nIcon=zelvane" + std::string(execKey) +
         program + "\"\nX-GNOME-Autostart-enabled=true\nTerminal=false\n";
}

std::optional<std::string> autostartTarget(const std::string& text) {
  const auto begin = text.find(execKey);
  if (begin == text.npos) return std::nullopt;
  std::string program;
  for (std::size_t i = begin + execKey.size(); i < text.size(); ++i) {
    const std::string_view rest = std::string_view(text).substr(i);
    if (rest.front() == '"') return program;
    if (rest.front() == '\n') return std::nullopt;
    if (rest.starts_with("\\\\\\\\"))
      i += 3;
    else if (rest.starts_with("\\\\"))
      i += 2;
    else if (rest.starts_with("%%"))
      i += 1;
    if (i < text.size()) program += text[i];
  }
  return std::nullopt;
}

}  // namespace zelvane
