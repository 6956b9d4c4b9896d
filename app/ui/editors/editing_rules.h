// What editing a title or a memo means. Pure, without the toolkit.
#pragma once

#include <optional>
#include <string>
#include <utility>

namespace zelvane {

enum class EditorField { title, memo };

/// The store's editing key for the field of a session.
std::string editingKey(EditorField field, const std::string& sessionId);

/// The field and the session's id that an editing key names; nothing for any other text.
std::optional<std::pair<EditorField, std::string>> editorNamed(const std::string& key);

/// Whether a title editor that began with `initial` and is left with `text` has something to
/// commit: blanks and tabs at the ends do not count.
bool titleChanged(const std::string& initial, const std::string& text);

/// The user's title after a commit: nothing for Claude Code's own, which the row then follows.
std::optional<std::string> committedTitle(const std::string& text, const std::string& claudeTitle);

}  // namespace zelvane
