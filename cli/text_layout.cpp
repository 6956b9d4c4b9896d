#include "cli/text_layout.h"

#include <algorithm>

#include "core/unicode.h"

namespace zelvane::cli {

std::string tailFitted(std::string_view text, int columns) {
  int width = displayWidth(text);
  if (width <= columns) return std::string(text);
  if (columns < 1) return {};
  const auto whole = scalars(text);
  std::u32string_view rest = whole;
  while (!rest.empty() && displayWidth("…") + width > columns) {
    const auto length = firstCharacterLength(rest);
    width -= displayWidth(utf8(rest.substr(0, length)));
    rest.remove_prefix(length);
  }
  return "…" + utf8(rest);
}

std::vector<std::string> wrapped(std::string_view text, int columns) {
  std::vector<std::string> lines;
  while (!text.empty()) {
    const auto end = std::min(text.find(' '), text.size());
    const auto word = fitted(text.substr(0, end), columns);
    text.remove_prefix(std::min(end + 1, text.size()));
    if (!lines.empty() && displayWidth(lines.back()) + 1 + displayWidth(word) <= columns) {
      lines.back() += " " + word;
    } else {
      lines.push_back(word);
    }
  }
  return lines;
}

std::vector<int> sharedOut(const std::vector<int>& wanted, int room) {
  std::vector<int> shares(wanted.size(), 0);
  std::vector<std::size_t> modestFirst;
  for (std::size_t i = 0; i < wanted.size(); ++i) modestFirst.push_back(i);
  std::stable_sort(modestFirst.begin(), modestFirst.end(),
                   [&](std::size_t a, std::size_t b) { return wanted[a] < wanted[b]; });
  auto left = static_cast<int>(wanted.size());
  for (const auto i : modestFirst) {
    shares[i] = std::min(wanted[i], std::max(room, 0) / left--);
    room -= shares[i];
  }
  return shares;
}

std::string printableLines(std::string_view text) {
  std::string result;
  while (true) {
    const auto line = text.substr(0, text.find('\n'));
    const auto indent = std::min(line.find_first_not_of(" \t"), line.size());
    result.append(line.substr(0, indent)).append(printable(line.substr(indent)));
    if (line.size() == text.size()) return result;
    result += '\n';
    text.remove_prefix(line.size() + 1);
  }
}

std::string joined(const std::vector<std::string>& lines) {
  std::string text;
  for (const auto& line : lines) text += line + "\n";
  return text;
}

}  // namespace zelvane::cli
