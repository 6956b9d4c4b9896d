#include "app/notes/notes_file.h"

#include <algorithm>

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

/// Moves an optional text out of the object; false when something else lies under the key.
bool takeText(Json& object, const char* key, std::optional<std::string>& text) {
  const auto found = object.find(key);
  if (found == object.end() || found->is_null()) return true;
  if (!found->is_string()) return false;
  text = std::move(found->get_ref<std::string&>());
  return true;
}

std::optional<NotesEntry> entryFrom(Json& object) {
  const auto updated = get::num(object, "updated");
  if (!updated) return std::nullopt;
  NotesEntry entry{.updated = *updated};
  if (!takeText(object, "title", entry.title) || !takeText(object, "memo", entry.memo)) {
    return std::nullopt;
  }
  return entry;
}

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
  auto file = parseJson(text);
  if (!file || !get::integral(*file, "v") || !get::dict(*file, "entries")) return std::nullopt;
  NotesMap notes;
  for (auto& [id, object] : (*file)["entries"].items()) {
    auto entry = entryFrom(object);
    if (!entry) return std::nullopt;
    if (!entry->empty()) notes.emplace(id, std::make_shared<NotesEntry>(std::move(*entry)));
  }
  return notes;
}

}  // namespace zelvane
