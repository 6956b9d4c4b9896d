#include "app/notes/notes_file.h"

#include <algorithm>
#include <cmath>

#include "core/json_file.h"
#include "core/unicode.h"

namespace zelvane {
namespace {

/// What stands in a JSON string for a character that cannot stand for itself.
std::string escaped(char c) {
  switch (c) {
    case '"':
      return "\\\"";
    case '\\':
      return "\\\\";
    case '\n':
      return "\\n";
    case '\r':
      return "\\r";
    case '\t':
      return "\\t";
    default:
      break;
  }
  constexpr char digits[] = "0123456789abcdef";
  return {'\\', 'u', '0', '0', digits[c >> 4], digits[c & 0xF]};
}

bool needsEscape(char c) { return static_cast<unsigned char>(c) < 0x20 || c == '"' || c == '\\'; }

/// Written here and not by the library, which is several times slower: all notes are written anew
/// with every save.
void appendQuoted(std::string& text, std::string_view part) {
  text += '"';
  while (true) {
    const auto special = std::find_if(part.begin(), part.end(), needsEscape);
    text.append(part.begin(), special);
    if (special == part.end()) break;
    text += escaped(*special);
    part = {special + 1, part.end()};
  }
  text += '"';
}

/// One text that is not UTF-8 would make the whole file unreadable.
void appendText(std::string& text, const std::string& part) {
  appendQuoted(text, isUtf8(part) ? part : repairedUtf8(part));
}

void appendEntry(std::string& text, const NotesEntry& entry) {
  text += '{';
  if (entry.title) {
    text += "\"title\":";
    appendText(text, *entry.title);
    text += ',';
  }
  if (entry.memo) {
    text += "\"memo\":";
    appendText(text, *entry.memo);
    text += ',';
  }
  text += "\"updated\":" + Json(entry.updated).dump() + '}';
}

/// Near enough that the text does not have to move while it grows.
std::size_t expectedSize(const NotesMap& notes) {
  std::size_t size = 64;
  for (const auto& [id, entry] : notes) {
    size += 64 + id.size() + (entry->title ? entry->title->size() : 0);
    if (entry->memo) size += entry->memo->size() + entry->memo->size() / 16;
  }
  return size;
}

constexpr int deepestNesting = 512;

/// Keeps the notes while the parser goes by, and nothing of all else, so that little more is held
/// than the notes, whatever else lies in the file. Each `false` refuses the whole text. Of what
/// stands there twice the last counts.
class NotesReader : public Json::json_sax_t {
 public:
  /// The notes, once the text was parsed to its end.
  std::optional<NotesMap> notes() && {
    if (!hasVersion_ || !hasEntries_) return std::nullopt;
    return std::move(notes_);
  }

  bool null() override { return value(Kind::null); }
  bool boolean(bool) override { return value(Kind::other); }
  bool number_integer(number_integer_t number) override { return integer(number, true); }
  bool number_unsigned(number_unsigned_t number) override {
    return integer(number, number <= INT64_MAX);
  }
  bool number_float(number_float_t number, const string_t&) override {
    number_ = number;
    const bool isWhole = std::trunc(number) == number && std::abs(number) < 0x1p63;
    return value(isWhole ? Kind::whole : Kind::number);
  }
  bool string(string_t& text) override {
    text_ = &text;
    return value(Kind::text);
  }
  bool binary(binary_t&) override { return false; }
  bool start_object(std::size_t) override { return begin(Kind::object); }
  bool start_array(std::size_t) override { return begin(Kind::other); }
  bool end_array() override { return end(); }
  bool end_object() override { return end(); }
  bool key(string_t& name) override {
    if (ignored_ > 0) return true;
    (depth_ == inEntries ? id_ : key_) = name;
    return true;
  }
  bool parse_error(std::size_t, const std::string&, const Json::exception&) override {
    return false;
  }

 private:
  enum class Kind { null, whole, number, text, object, other };
  /// How deep one is where.
  enum Depth { outside, inFile, inEntries, inEntry };

  template <typename Integer>
  bool integer(Integer number, bool fits) {
    number_ = static_cast<double>(number);
    return value(fits ? Kind::whole : Kind::number);
  }

  bool begin(Kind kind) {
    const bool isIgnored = ignored_ > 0;
    if (!value(kind) || ++depth_ > deepestNesting) return false;
    const bool isKnown = depth_ != inEntry + 1 && (depth_ != inEntries || key_ == "entries");
    if (!isIgnored && !isKnown) ignored_ = depth_;
    return true;
  }

  bool end() {
    if (ignored_ == depth_) {
      ignored_ = 0;
    } else if (ignored_ == 0 && depth_ == inEntry && !endEntry()) {
      return false;
    }
    --depth_;
    return true;
  }

  /// What comes next, a value or the beginning of one.
  bool value(Kind kind) {
    if (ignored_ > 0) return true;
    switch (depth_) {
      case outside:
        return kind == Kind::object;
      case inFile:
        return valueInFile(kind);
      case inEntries:
        entry_ = {};
        hasUpdated_ = false;
        return kind == Kind::object;
      default:
        return valueInEntry(kind);
    }
  }

  bool valueInFile(Kind kind) {
    if (key_ == "v") return hasVersion_ = kind == Kind::whole;
    if (key_ != "entries") return true;
    notes_.clear();
    return hasEntries_ = kind == Kind::object;
  }

  bool valueInEntry(Kind kind) {
    if (key_ == "title") return take(kind, entry_.title);
    if (key_ == "memo") return take(kind, entry_.memo);
    if (key_ != "updated") return true;
    entry_.updated = number_;
    return hasUpdated_ = kind == Kind::whole || kind == Kind::number;
  }

  bool take(Kind kind, std::optional<std::string>& text) {
    if (kind == Kind::null) text = std::nullopt;
    if (kind == Kind::text) text = std::move(*text_);
    return kind == Kind::null || kind == Kind::text;
  }

  bool endEntry() {
    if (entry_.empty()) {
      notes_.erase(id_);
    } else {
      notes_[id_] = std::make_shared<NotesEntry>(std::move(entry_));
    }
    return hasUpdated_;
  }

  NotesMap notes_;
  bool hasVersion_ = false;
  bool hasEntries_ = false;
  int depth_ = outside;
  int ignored_ = 0;  ///< depth of an object or array under an unknown key; 0 outside of such
  std::string key_;  ///< of the file or of an entry
  std::string id_;
  NotesEntry entry_;
  bool hasUpdated_ = false;
  double number_ = 0;
  string_t* text_ = nullptr;
};

}  // namespace

std::string encodeNotes(const NotesMap& notes) {
  std::string text;
  text.reserve(expectedSize(notes));
  text = "{\"v\":1,\"entries\":{";
  bool first = true;
  for (const auto& [id, entry] : notes) {
    if (!first) text += ',';
    first = false;
    appendText(text, id);
    text += ':';
    appendEntry(text, *entry);
  }
  return text += "}}";
}

std::optional<NotesMap> decodeNotes(std::string_view text) {
  // The library takes a zero byte for the end, and would not see what follows it.
  if (text.find('\0') != text.npos) return std::nullopt;
  NotesReader reader;
  if (!Json::sax_parse(text, &reader)) return std::nullopt;
  return std::move(reader).notes();
}

}  // namespace zelvane
