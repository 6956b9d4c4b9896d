#include "app/ui/editors/editing_rules.h"

#include "core/text.h"

namespace zelvane {
namespace {

constexpr std::string_view titlePrefix = "title:", memoPrefix = "memo:";

}  // namespace

std::string editingKey(EditorField field, const std::string& sessionId) {
  return std::string(field == EditorField::title ? titlePrefix : memoPrefix) + sessionId;
}

std::optional<std::pair<EditorField, std::string>> editorNamed(const std::string& key) {
  if (key.starts_with(titlePrefix)) {
    return std::pair(EditorField::title, key.substr(titlePrefix.size()));
  }
  if (key.starts_with(memoPrefix)) {
    return std::pair(EditorField::memo, key.substr(memoPrefix.size()));
  }
  return std::nullopt;
}

bool titleChanged(const std::string& initial, const std::string& text) {
  return trimmed(initial) != trimmed(text);
}

std::optional<std::string> committedTitle(const std::string& text, const std::string& claudeTitle) {
  if (trimmed(text) == trimmed(claudeTitle)) return std::nullopt;
  return text;
}

}  // namespace zelvane
