#include "cli/note_command.h"

#include <iostream>
#include <iterator>

#include "core/localization.h"
#include "core/paths.h"
#include "core/unicode.h"

#include "app/notes/notes_store.h"
#include "cli/output.h"
#include "cli/row_command.h"

namespace zelvane::cli {
namespace {

// More than anybody types; a mistaken pipe must not fill the notes.
constexpr std::size_t longestInput = std::size_t{64} << 20;

ExitCode fail(const std::string& sentence) {
  writeError(sentence + "\n");
  return failed;
}

/// Standard input whole, less the line break that ends it; nothing when there is too much of it.
std::optional<std::string> standardInput() {
  std::string text;
  for (std::istreambuf_iterator<char> next(std::cin), end; next != end; ++next) {
    if (text.size() == longestInput) return std::nullopt;
    text.push_back(*next);
  }
  if (text.ends_with('\n')) text.pop_back();
  return text;
}

ExitCode print(const std::optional<std::string>& text) {
  return exitCode(writeOut(text ? *text + "\n" : ""));
}

void change(NotesStore& notes, Note note, const ZelvaneSession& row, const std::string& text) {
  if (note == Note::title) {
    // Claude's own title is no title of the user's: the row goes on following it.
    notes.setTitle(row.id, text == row.claudeTitle ? std::nullopt : std::optional(text));
    return;
  }
  const auto before = notes.entry(row.id).memo.value_or("");
  notes.setMemo(row.id, text);
  notes.memoEditEnded(row.id, before);
}

ExitCode apply(Note note, const ZelvaneSession& row, const std::optional<std::string>& text) {
  const bool prints = !text;
  NotesStore notes({.dir = ZelvanePaths::notes(), .readOnly = prints});
  if (prints) {
    const auto entry = notes.entry(row.id);
    return print(note == Note::title ? entry.title : entry.memo);
  }
  const auto wanted = *text == "-" ? standardInput() : text;
  if (!wanted) return fail(L("글이 너무 길어서 저장하지 않았어요."));
  if (!isUtf8(*wanted)) return fail(L("글이 UTF-8 이 아니어서 저장하지 않았어요."));
  change(notes, note, row, *wanted);
  notes.flush();
  const auto problem = notes.problem();
  return problem ? fail(*problem) : fine;
}

}  // namespace

ExitCode changeNote(Note note, const std::string& row, const std::optional<std::string>& text) {
  return onRow(row, [&](const ZelvaneSession& session) { return apply(note, session, text); });
}

}  // namespace zelvane::cli
