#include "app/hook/payload_filter.h"

#include <algorithm>
#include <cstring>

namespace zelvane {
namespace {

constexpr std::size_t longestKey = 64;
constexpr std::string_view replacement = "\\ufffd";

bool isSpace(char c) { return c == ' ' || c == '\n' || c == '\r' || c == '\t'; }

/// Which half of a surrogate pair a whole escape is: 'h'igh, 'l'ow, or 0 for neither.
char surrogate(std::string_view escape) {
  if (escape.size() != 6 || (escape[2] | 0x20) != 'd') return 0;
  const char digit = static_cast<char>(escape[3] | 0x20);
  if (digit == '8' || digit == '9' || digit == 'a' || digit == 'b') return 'h';
  return digit >= 'c' && digit <= 'f' ? 'l' : char{0};
}

constexpr std::size_t longestCharacter = 4;

/// Inside a character of several bytes: not a place to cut.
bool continues(char c) { return (static_cast<unsigned char>(c) & 0xC0) == 0x80; }

}  // namespace

void PayloadFilter::feed(std::string_view bytes) {
  const char* at = bytes.data();
  const char* const end = at + bytes.size();
  while (at < end && phase_ != Phase::complete && phase_ != Phase::failed) {
    if (phase_ == Phase::inString && part_ == Part::skippedString) {
      at = skipString(at, end);
      if (at == end) break;
    }
    const char c = *at++;
    if (phase_ == Phase::outside) {
      outside(c);
    } else if (phase_ == Phase::inString) {
      inString(c);
    } else {
      inEscape(c);
    }
    if (kept_.size() > longestResult) phase_ = Phase::failed;
  }
}

std::string_view PayloadFilter::topLevel(std::string_view name) const {
  const auto found = std::find_if(topLevel_.begin(), topLevel_.end(),
                                  [&](const Member& member) { return member.name == name; });
  return found == topLevel_.end() ? std::string_view() : std::string_view(found->text);
}

/// Where a string that does not stay ends, or `end`. Nearly all bytes of a large text pass here.
const char* PayloadFilter::skipString(const char* at, const char* end) {
  const auto endsEscaped = [at](const char* here) {
    const char* first = here;
    while (first > at && first[-1] == '\\') --first;
    return (here - first) % 2 != 0;
  };
  for (const char* quote = at; quote < end; ++quote) {
    quote =
        static_cast<const char*>(std::memchr(quote, '"', static_cast<std::size_t>(end - quote)));
    if (!quote) break;
    if (!endsEscaped(quote)) return quote;
  }
  if (endsEscaped(end)) {
    phase_ = Phase::inEscape;
    escape_ = '\\';
  }
  return end;
}

void PayloadFilter::outside(char c) {
  switch (c) {
    case '{':
    case '[':
      return open(c);
    case '}':
    case ']':
      return close(c);
    case '"':
      return beginString();
    case ',':
      return comma();
    case ':':
      return;
    default:
      break;
  }
  if (isSpace(c) || skipping_) return;
  // A number or literal, one byte at a time; a parser looks at it later.
  if (frames_.empty()) phase_ = Phase::failed;
  if (!frames_.empty() && !frames_.back().expectsKey) {
    if (kept_.ends_with('[') || kept_.ends_with(',')) ++frames_.back().members;
    kept_ += c;
  }
}

void PayloadFilter::open(char c) {
  if (skipping_) {
    ++skipDepth_;
    return;
  }
  beginValue();
  if (static_cast<int>(frames_.size()) >= deepestNesting) {
    kept_ += "null";
    skipping_ = true;
    skipDepth_ = 1;
    return;
  }
  frames_.push_back({.object = c == '{', .expectsKey = c == '{'});
  kept_ += c;
}

void PayloadFilter::close(char c) {
  if (skipping_ && skipDepth_ > 0) {
    if (--skipDepth_ == 0) endValue();
    return;
  }
  skipping_ = false;
  if (frames_.empty() || frames_.back().object != (c == '}')) {
    phase_ = Phase::failed;
    return;
  }
  frames_.pop_back();
  kept_ += c;
  endValue();
}

void PayloadFilter::comma() {
  if (skipping_ && skipDepth_ > 0) return;
  skipping_ = false;
  if (frames_.empty()) {
    phase_ = Phase::failed;
    return;
  }
  Frame& frame = frames_.back();
  frame.expectsKey = frame.object;
  // An array's comma stands between its elements; an object's is written with the next kept name.
  if (!frame.object) {
    skipping_ = frame.members >= longestArray || isFull();
    if (!skipping_) kept_ += ',';
  }
}

/// A value that stays begins; an array counts it.
void PayloadFilter::beginValue() {
  if (frames_.empty()) return;
  if (frames_.back().expectsKey) phase_ = Phase::failed;
  if (!frames_.back().object) ++frames_.back().members;
}

void PayloadFilter::endValue() {
  skipping_ = false;
  if (frames_.empty()) phase_ = Phase::complete;
}

void PayloadFilter::beginString() {
  phase_ = Phase::inString;
  highSurrogate_.clear();
  if (skipping_) {
    part_ = Part::skippedString;
  } else if (!frames_.empty() && frames_.back().expectsKey) {
    part_ = Part::key;
    key_.clear();
  } else {
    if (frames_.empty()) phase_ = Phase::failed;
    beginValue();
    part_ = Part::keptString;
    kept_ += '"';
    stringStart_ = kept_.size();
  }
}

void PayloadFilter::inString(char c) {
  if (c == '"') return endString();
  if (c == '\\') {
    phase_ = Phase::inEscape;
    escape_ = c;
    return;
  }
  if (part_ == Part::key) {
    if (key_.size() <= longestKey) key_ += c;
  } else if (part_ == Part::keptString) {
    put({&c, 1});
  }
}

void PayloadFilter::inEscape(char c) {
  escape_ += c;
  const bool unicode = escape_[1] == 'u' && part_ != Part::skippedString;
  if (unicode && escape_.size() < 6) return;
  phase_ = Phase::inString;
  if (part_ == Part::key) key_.append(longestKey + 1, ' ');  // no name of ours
  if (part_ == Part::keptString) putEscape();
}

/// An escape goes in whole; half of a surrogate pair is replaced, for no parser takes it.
void PayloadFilter::putEscape() {
  const char half = surrogate(escape_);
  if (half == 'l' && !highSurrogate_.empty()) {
    const std::string pair = highSurrogate_ + escape_;
    highSurrogate_.clear();
    return put(pair);
  }
  put("");
  if (part_ != Part::keptString) return;
  if (half == 'h') {
    highSurrogate_ = escape_;
  } else {
    put(half == 'l' ? replacement : std::string_view(escape_));
  }
}

/// Adds text to the string at hand unless it is long enough already.
void PayloadFilter::put(std::string_view text) {
  if (!highSurrogate_.empty()) {
    highSurrogate_.clear();
    put(replacement);
  }
  if (part_ != Part::keptString) return;
  const auto length = kept_.size() - stringStart_;
  // Bytes that only ever continue are no character.
  const bool between =
      text.empty() || !continues(text[0]) || length >= longestHere() + longestCharacter;
  if (length >= longestHere() && between) {
    part_ = Part::skippedString;  // its end is still to come
    kept_ += '"';
    return;
  }
  kept_ += text;
}

void PayloadFilter::endString() {
  phase_ = Phase::outside;
  if (part_ == Part::key) return endKey();
  if (part_ == Part::keptString) {
    put("");
    if (part_ == Part::keptString) kept_ += '"';
  }
  if (frames_.size() == 1 && frames_.back().object && !skipping_) {
    topLevel_.push_back({key_, kept_.substr(stringStart_, kept_.size() - stringStart_ - 1)});
  }
}

void PayloadFilter::endKey() {
  Frame& frame = frames_.back();
  frame.expectsKey = false;
  if (!wanted_(key_) || isFull()) {
    skipping_ = true;
    skipDepth_ = 0;
    return;
  }
  if (frame.members++ > 0) kept_ += ',';
  kept_ += '"' + key_ + "\":";
}

}  // namespace zelvane
