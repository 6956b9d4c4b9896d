#include "app/model/transcripts/transcript_line.h"

#include <bit>
#include <cstdint>
#include <cstring>

#include "core/json_file.h"
#include "core/unicode.h"

namespace zelvane {
namespace {

/// Walks through JSON text. Every function starts at a value's first byte and leaves `at` behind
/// its last; false when the text is damaged or ends too early.
class Walker {
 public:
  explicit Walker(std::string_view text) : at_(text.data()), end_(text.data() + text.size()) {}

  /// The next byte that is not white space; 0 at the end.
  char next() {
    while (at_ < end_ && (*at_ == ' ' || *at_ == '\t' || *at_ == '\r' || *at_ == '\n')) ++at_;
    return at_ < end_ ? *at_ : '\0';
  }
  bool atEnd() { return next() == '\0' && at_ == end_; }
  bool take(char c) {
    if (next() != c) return false;
    ++at_;
    return true;
  }

  bool string(std::string_view& text) {
    if (!take('"')) return false;
    const char* const close = closingQuote(at_);
    if (!close) return false;
    text = {at_, static_cast<std::size_t>(close - at_)};
    at_ = close + 1;
    return true;
  }

  bool skip() {
    const char first = next();
    std::string_view ignored;
    if (first == '"') return string(ignored);
    return first == '{' || first == '[' ? skipContainer() : skipScalar();
  }

  /// A string's text; another value leaves `text` as it is.
  bool stringOrSkip(std::string_view& text) { return next() == '"' ? string(text) : skip(); }

  bool trueOrSkip(bool& flag) {
    flag = next() == 't';
    return skip();
  }

  /// Calls `member(key)` at each value of an object, which moves behind it; skips another value.
  template <typename Member>
  bool object(const Member& member) {
    if (next() != '{') return skip();
    ++at_;
    if (take('}')) return true;
    do {
      std::string_view key;
      if (!string(key) || !take(':') || !member(key)) return false;
    } while (take(','));
    return take('}');
  }

  /// Calls `item()` at each value of an array, which moves behind it; skips another value.
  template <typename Item>
  bool array(const Item& item) {
    if (next() != '[') return skip();
    ++at_;
    if (take(']')) return true;
    do {
      if (!item()) return false;
    } while (take(','));
    return take(']');
  }

 private:
  /// Most strings are no longer than a UUID, and a call costs more than looking at eight bytes at
  /// once.
  const char* nextQuote(const char* from) const {
    constexpr std::ptrdiff_t word = sizeof(std::uint64_t);
    for (int i = 0; i < 6 && end_ - from >= word; ++i, from += word) {
      if (const auto quotes = quotesIn(from)) return from + std::countr_zero(quotes) / 8;
    }
    return static_cast<const char*>(std::memchr(from, '"', static_cast<std::size_t>(end_ - from)));
  }

  /// Eight bytes, where the lowest bit set lies in the first quote's byte; 0 when there is none.
  static std::uint64_t quotesIn(const char* from) {
    static_assert(std::endian::native == std::endian::little);
    constexpr std::uint64_t ones = 0x0101010101010101;
    std::uint64_t bytes = 0;
    std::memcpy(&bytes, from, sizeof bytes);
    bytes ^= ones * '"';
    return (bytes - ones) & ~bytes & (ones << 7);
  }

  /// The end of the string whose text begins here; null when it has none.
  const char* closingQuote(const char* begin) const {
    const char* quote = nextQuote(begin);
    while (quote && quote > begin && quote[-1] == '\\' && escaped(begin, quote)) {
      quote = nextQuote(quote + 1);
    }
    return quote;
  }

  static bool escaped(const char* begin, const char* quote) {
    const char* first = quote;
    while (first > begin && first[-1] == '\\') --first;
    return (quote - first) % 2 != 0;
  }

  bool skipContainer() {
    std::size_t depth = 0;
    for (const char* at = at_; at < end_; ++at) {
      if (*at == '"') {
        at = closingQuote(at + 1);
        if (!at) return false;
      } else if (*at == '{' || *at == '[') {
        ++depth;
      } else if ((*at == '}' || *at == ']') && --depth == 0) {
        at_ = at + 1;
        return true;
      }
    }
    return false;
  }

  bool skipScalar() {
    switch (next()) {
      case 't':
        return skipWord("true");
      case 'f':
        return skipWord("false");
      case 'n':
        return skipWord("null");
      default:
        return skipNumber();
    }
  }

  bool skipWord(std::string_view word) {
    if (!std::string_view(at_, static_cast<std::size_t>(end_ - at_)).starts_with(word))
      return false;
    at_ += word.size();
    return true;
  }

  bool skipNumber() {
    const char* const begin = at_;
    while (at_ < end_ && isOfNumber(*at_)) ++at_;
    return at_ > begin;
  }

  static bool isOfNumber(char c) {
    return (c >= '0' && c <= '9') || c == '.' || c == '-' || c == '+' || c == 'e' || c == 'E';
  }

  const char* at_;
  const char* end_;
};

class LineReader {
 public:
  explicit LineReader(std::string_view text) : walker_(text) {}

  std::optional<TranscriptLine> read() {
    const bool whole = walker_.next() == '{' &&
                       walker_.object([this](std::string_view key) { return member(key); }) &&
                       walker_.atEnd();
    if (!whole || !ofConversation()) return std::nullopt;
    line_.type = type_ == "user" ? TranscriptLine::Type::user : TranscriptLine::Type::assistant;
    return std::move(line_);
  }

 private:
  bool ofConversation() const { return type_ == "user" || type_ == "assistant"; }

  bool member(std::string_view key) {
    if (key == "type") {
      type_ = {};
      return walker_.stringOrSkip(type_) && ofConversation();
    }
    if (key == "message") {
      return walker_.object([this](std::string_view name) { return messageMember(name); });
    }
    if (key == "origin") {
      return walker_.object([this](std::string_view name) {
        return name == "kind" ? walker_.stringOrSkip(line_.originKind) : walker_.skip();
      });
    }
    if (key == "isMeta") return walker_.trueOrSkip(line_.meta);
    if (key == "isSidechain") return walker_.trueOrSkip(line_.sidechain);
    if (key == "isCompactSummary") return walker_.trueOrSkip(line_.summary);
    if (key == "promptSource") return walker_.stringOrSkip(line_.promptSource);
    if (key == "effort") return walker_.stringOrSkip(line_.effort);
    if (key == "perTurnEffort") return walker_.stringOrSkip(line_.perTurnEffort);
    return walker_.skip();
  }

  bool messageMember(std::string_view key) {
    if (key == "model") return walker_.stringOrSkip(line_.model);
    if (key == "role") return walker_.stringOrSkip(role_);
    if (key != "content") return walker_.skip();
    if (walker_.next() == '"') return walker_.string(line_.content.emplace());
    return walker_.array([this] { return contentItem(); });
  }

  /// What tools gave back is most of a transcript and tells nothing: it need not be read to its
  /// end.
  bool isOfTool(std::string_view itemType) const {
    return itemType == "tool_result" && (role_ == "user" || type_ == "user");
  }

  bool contentItem() {
    std::string_view type;
    std::optional<std::string_view> text;
    const bool whole = walker_.object([&](std::string_view key) {
      if (key == "type") return walker_.stringOrSkip(type) && !isOfTool(type);
      if (key == "text" && walker_.next() == '"') return walker_.string(text.emplace());
      return walker_.skip();
    });
    if (type == "text") line_.texts.push_back(text.value_or(""));
    if (type == "image") line_.hasImage = true;
    if (type == "tool_result") line_.hasToolResult = true;
    return whole;
  }

  Walker walker_;
  std::string_view type_;
  std::string_view role_;
  TranscriptLine line_;
};

}  // namespace

std::optional<TranscriptLine> transcriptLine(std::string_view line) {
  return LineReader(line).read();
}

std::optional<std::string> plainText(std::string_view written) {
  const auto value = parseJson('"' + repairedUtf8(written) + '"');
  if (!value || !value->is_string()) return std::nullopt;
  return value->get<std::string>();
}

}  // namespace zelvane
