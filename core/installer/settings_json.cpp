#include "core/installer/settings_json.h"

#include <algorithm>
#include <cstdlib>
#include <set>
#include <vector>

namespace zelvane {
namespace {

/// A decimal number as its significant digits and where the point stands: equal exactly for numbers
/// that are equal.
struct Decimal {
  std::string digits;
  long long exponent = 0;
  bool negative = false;
  bool operator==(const Decimal&) const = default;
};

Decimal decimal(const std::string& text) {
  Decimal result;
  std::size_t at = 0;
  result.negative = text[0] == '-';
  if (result.negative) ++at;
  bool fraction = false;
  for (; at < text.size() && (text[at] | 0x20) != 'e'; ++at) {
    if (text[at] == '.') {
      fraction = true;
      continue;
    }
    result.digits += text[at];
    if (fraction) --result.exponent;
  }
  if (at < text.size()) {
    // Far beyond what a machine number can hold, one is like another.
    constexpr long long largest = 1'000'000'000'000;
    const auto written = std::strtoll(text.c_str() + at + 1, nullptr, 10);
    result.exponent += std::clamp(written, -largest, largest);
  }
  const auto first = result.digits.find_first_not_of('0');
  if (first == std::string::npos) return {};
  result.digits.erase(0, first);
  while (result.digits.back() == '0') {
    result.digits.pop_back();
    ++result.exponent;
  }
  return result;
}

/// Builds the document, as the library would, but for numbers that it would round.
class ExactDocument {
 public:
  Json take() { return std::move(root_); }

  // NOLINTBEGIN(readability-identifier-naming): the library calls them so.
  bool null() { return add(nullptr); }
  bool boolean(bool value) { return add(value); }
  bool number_integer(Json::number_integer_t value) { return add(value); }
  bool number_unsigned(Json::number_unsigned_t value) { return add(value); }
  bool number_float(Json::number_float_t value, const std::string& text) {
    if (decimal(Json(value).dump()) == decimal(text)) return add(value);
    return add(Json::binary({text.begin(), text.end()}));
  }
  bool string(std::string& value) { return add(std::move(value)); }
  bool binary(Json::binary_t& value) { return add(Json(std::move(value))); }
  bool start_object(std::size_t) { return open(Json::object()); }
  bool start_array(std::size_t) { return open(Json::array()); }
  bool key(std::string& name) {
    key_ = std::move(name);
    return true;
  }
  bool end_object() { return close(); }
  bool end_array() { return close(); }
  bool parse_error(std::size_t, const std::string&, const Json::exception&) { return false; }
  // NOLINTEND(readability-identifier-naming)

 private:
  Json* place(Json value) {
    if (open_.empty()) {
      root_ = std::move(value);
      return &root_;
    }
    Json& parent = *open_.back();
    if (parent.is_array()) {
      parent.push_back(std::move(value));
      return &parent.back();
    }
    return &(parent[key_] = std::move(value));
  }
  bool add(Json value) {
    place(std::move(value));
    return true;
  }
  bool open(Json value) {
    open_.push_back(place(std::move(value)));
    return true;
  }
  bool close() {
    open_.pop_back();
    return true;
  }

  Json root_;
  std::vector<Json*> open_;
  std::string key_;
};

void write(const Json& value, std::size_t indent, std::string& out);

template <typename Items, typename Write>
void writeContainer(const Items& items, std::size_t indent, char begin, char end, std::string& out,
                    const Write& writeItem) {
  out += begin;
  bool first = true;
  for (const auto& item : items) {
    out += first ? "\n" : ",\n";
    out.append(indent + 2, ' ');
    writeItem(item);
    first = false;
  }
  if (!first) {
    out += '\n';
    out.append(indent, ' ');
  }
  out += end;
}

void write(const Json& value, std::size_t indent, std::string& out) {
  if (value.is_object()) {
    writeContainer(value.items(), indent, '{', '}', out, [&](const auto& member) {
      out += Json(member.key()).dump() + ": ";
      write(member.value(), indent + 2, out);
    });
  } else if (value.is_array()) {
    writeContainer(value, indent, '[', ']', out,
                   [&](const Json& element) { write(element, indent + 2, out); });
  } else if (value.is_binary()) {
    out.append(value.get_binary().begin(), value.get_binary().end());
  } else {
    out += value.dump();
  }
}

/// A key as it is meant: `raw` with its escapes resolved.
std::string decodedKey(std::string_view raw) {
  if (raw.find('\\') == std::string_view::npos) return std::string(raw);
  const auto text = "\"" + std::string(raw) + "\"";
  const auto parsed = Json::parse(text, nullptr, /*allow_exceptions=*/false);
  return parsed.is_string() ? parsed.get<std::string>() : std::string(raw);
}

/// Where the string that begins after the quote at `at` ends; the end of the bytes when it does
/// not.
std::size_t stringEnd(std::string_view bytes, std::size_t at) {
  while (at < bytes.size() && bytes[at] != '"') at += bytes[at] == '\\' ? 2 : 1;
  return std::min(at, bytes.size());
}

struct Container {
  bool object = false;
  bool expectsKey = false;
  std::set<std::string> keys;
};

}  // namespace

bool isBlank(std::string_view bytes) {
  return bytes.find_first_not_of(" \t\n\r") == std::string_view::npos;
}

bool hasDuplicateKeys(std::string_view bytes) {
  std::vector<Container> open;
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    const char c = bytes[i];
    if (c == '{' || c == '[') {
      open.push_back({.object = c == '{', .expectsKey = c == '{'});
    } else if (open.empty()) {
      if (c == '"') i = stringEnd(bytes, i + 1);
    } else if (c == '}' || c == ']') {
      open.pop_back();
    } else if (c == ',' || c == ':') {
      open.back().expectsKey = open.back().object && c == ',';
    } else if (c == '"') {
      const auto end = stringEnd(bytes, i + 1);
      Container& container = open.back();
      if (container.expectsKey &&
          !container.keys.insert(decodedKey(bytes.substr(i + 1, end - i - 1))).second) {
        return true;
      }
      i = end;
    }
  }
  return false;
}

std::optional<Json> parseSettings(std::string_view bytes) {
  if (isBlank(bytes)) return Json::object();
  ExactDocument document;
  if (!mayBeParsed(bytes) || !Json::sax_parse(bytes, &document)) return std::nullopt;
  auto settings = document.take();
  if (!settings.is_object()) return std::nullopt;
  return settings;
}

std::optional<std::string> settingsText(const Json& settings) {
  try {
    std::string text;
    write(settings, 0, text);
    return text + "\n";
  } catch (const Json::exception&) {  // a string that is not UTF-8
    return std::nullopt;
  }
}

}  // namespace zelvane
