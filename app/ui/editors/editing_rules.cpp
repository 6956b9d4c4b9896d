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

bool titleTapEdits(std::optional<Time> openedAt, Time now) {
  constexpr Seconds openingTap(0.5);
  if (!openedAt) return true;
  const Seconds since = now - *openedAt;
  return since < Seconds(0) || since >= openingTap;  // the clock may have been set back
}

}  // namespace zelvane
