#include "core/text.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <ctime>

#include "core/unicode.h"

namespace zelvane {
namespace {

using Predicate = bool (*)(char32_t);

/// Splits at the separators, drops empty pieces and joins the rest with one blank.
std::u32string folded(std::u32string_view text, Predicate isSeparator) {
  std::u32string result;
  bool separated = false;
  for (const char32_t scalar : text) {
    if (isSeparator(scalar)) {
      separated = true;
      continue;
    }
    if (separated && !result.empty()) result.push_back(U' ');
    separated = false;
    result.push_back(scalar);
  }
  return result;
}

std::string numberText(const Json& number) {
  if (number.get<double>() == 0) return {};
  auto digits = number.dump();
  if (digits.ends_with(".0")) digits.resize(digits.size() - 2);
  return digits;
}

std::string plainText(const Json& value) {
  if (value.is_string()) return value.get<std::string>();
  if (value.is_null()) return {};
  if (value.is_number()) return numberText(value);
  return value.dump(-1, ' ', false, Json::error_handler_t::replace);
}

std::string replacedAll(std::string_view text, char wanted, std::string_view replacement) {
  std::string result;
  for (const char c : text) {
    if (c == wanted) {
      result += replacement;
    } else {
      result += c;
    }
  }
  return result;
}

std::string wrapped(const std::string& text, char quote) {
  std::string result(1, quote);
  result += text;
  result += quote;
  return result;
}

}  // namespace

std::string oneLine(const Json* value, std::size_t max) {
  auto line = folded(scalars(value ? plainText(*value) : std::string()), isWhitespace);
  if (line.size() > max) line = line.substr(0, max - 1) + U'…';
  return utf8(line);
}

std::string oneLine(std::string_view text) { return utf8(folded(scalars(text), isLineBreak)); }

std::optional<std::string> nonEmpty(std::optional<std::string> text) {
  if (text && text->empty()) return std::nullopt;
  return text;
}

std::string trimmed(std::string_view text) {
  constexpr std::string_view blanks = " \t";
  const auto first = text.find_first_not_of(blanks);
  if (first == text.npos) return {};
  return std::string(text.substr(first, text.find_last_not_of(blanks) - first + 1));
}

std::string shellQuote(std::string_view text) {
  constexpr std::string_view safe =
      "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789@%+=:,./-_";
  if (text.empty()) return "''";
  if (text.find_first_not_of(safe) == text.npos) return std::string(text);
  return wrapped(replacedAll(text, '\'', "'\"'\"'"), '\'');
}

std::string appleScriptString(std::string_view text) {
  return wrapped(replacedAll(replacedAll(text, '\\', "\\\\"), '"', "\\\""), '"');
}

bool isSafeFileName(std::string_view text) {
  constexpr std::size_t longest = 200;  // leaves room for our endings within a name's 255 bytes
  return !text.empty() && text.size() <= longest && text.front() != '.' &&
         std::none_of(text.begin(), text.end(), [](unsigned char c) {
           return c == '/' || c == '\\' || c < 0x20 || c == 0x7f;
         });
}

std::string PosixFormatter::string(Time time) const {
  const std::time_t seconds = wholeSeconds(time);
  std::tm parts{};
  localtime_r(&seconds, &parts);
  std::string result;
  for (std::size_t i = 0; i < pattern_.size();) {
    const char letter = pattern_[i];
    const auto end = std::min(pattern_.find_first_not_of(letter, i), pattern_.size());
    const int width = static_cast<int>(end - i);
    const auto put = [&](int value) {
      std::array<char, 16> digits;
      std::snprintf(digits.data(), digits.size(), "%0*d", width, value);
      result += digits.data();
    };
    i = end;
    switch (letter) {
      case 'y':
        put(parts.tm_year + 1900);
        break;
      case 'M':
        put(parts.tm_mon + 1);
        break;
      case 'd':
        put(parts.tm_mday);
        break;
      case 'H':
        put(parts.tm_hour);
        break;
      case 'm':
        put(parts.tm_min);
        break;
      case 's':
        put(parts.tm_sec);
        break;
      case '\'': {
        const auto close = std::min(pattern_.find('\'', i), pattern_.size());
        result += pattern_.substr(i, close - i);
        i = close + 1;
        break;
      }
      default:
        result.append(static_cast<std::size_t>(width), letter);
    }
  }
  return result;
}

PosixFormatter posixFormatter(std::string pattern) { return PosixFormatter(std::move(pattern)); }

}  // namespace zelvane
