#include "cli/note_command.h"

#include <array>
#include <cerrno>
#include <poll.h>
#include <unistd.h>

#include "core/localization.h"
#include "core/paths.h"
#include "core/unicode.h"

#include "app/notes/notes_store.h"
#include "cli/output.h"
#include "cli/row_command.h"
#include "cli/text_layout.h"

namespace zelvane::cli {
namespace {

// More than anybody types; a mistaken pipe must not fill the notes.
constexpr std::size_t longestInput = std::size_t{64} << 20;

ExitCode fail(const std::string& sentence) {
  writeError(sentence + "\n");
  return failed;
}

/// Takes standard input, up to a little more than may be kept; false when it cannot be read: that
/// is not the same as an empty text.
bool readInput(std::string& text) {
  std::array<char, 65'536> part{};
  while (text.size() <= longestInput) {
    const ssize_t count = read(STDIN_FILENO, part.data(), part.size());
    if (count > 0) {
      text.append(part.data(), static_cast<std::size_t>(count));
    } else if (count < 0 && errno == EAGAIN) {
      // Programs that share the terminal may have made it non-blocking.
      pollfd waits{STDIN_FILENO, POLLIN, 0};
      poll(&waits, 1, -1);
    } else if (count == 0 || errno != EINTR) {
      return count == 0;
    }
  }
  return true;
}

/// Standard input less the line break that ends it.
ExitCode take(std::string& text) {
  if (!readInput(text)) return fail(L("표준 입력을 읽지 못해서 저장하지 않았어요."));
  if (text.size() > longestInput) return fail(L("글이 너무 길어서 저장하지 않았어요."));
  if (text.ends_with('\n')) text.pop_back();
  return fine;
}

ExitCode print(Note note, const ZelvaneSession& row) {
  const NotesStore notes({.dir = ZelvanePaths::notes(), .readOnly = true});
  const auto problem = notes.problem();
  tell(problem);
  auto entry = notes.entry(row.id);
  auto text = std::move(note == Note::title ? entry.title : entry.memo);
  if (text && terminalSize()) text = printableLines(*text);
  if (text) *text += '\n';
  const auto code = text ? exitCode(writeOut(*text)) : fine;
  return problem ? failed : code;
}

ExitCode change(Note note, const ZelvaneSession& row, const std::string& text) {
  NotesStore notes({.dir = ZelvanePaths::notes()});
  tell(notes.problem());
  const auto before = notes.entry(row.id).memo.value_or("");
  if (note == Note::title) {
    // Claude's own title is no title of the user's: the row goes on following it.
    notes.setTitle(row.id, text == row.claudeTitle ? std::nullopt : std::optional(text));
  } else {
    notes.setMemo(row.id, text);
  }
  if (const auto reason = notes.flush()) {
    notes.setReadOnly();  // what has failed is not done later, behind the user's back
    return fail(LF("저장하지 못했어요 (%@). 저절로 다시 시도하지 않아요.", {*reason}));
  }
  if (note == Note::memo) notes.memoEditEnded(row.id, before);
  return fine;
}

ExitCode apply(Note note, const ZelvaneSession& row, const std::optional<std::string>& text) {
  if (!text) return print(note, row);
  auto wanted = *text;
  if (wanted == "-") {
    wanted.clear();
    if (const auto code = take(wanted); code != fine) return code;
  }
  if (!isUtf8(wanted)) return fail(L("글이 UTF-8 이 아니어서 저장하지 않았어요."));
  return change(note, row, wanted);
}

}  // namespace

ExitCode changeNote(Note note, const std::string& row, const std::optional<std::string>& text) {
  return onRow(row, [&](const ZelvaneSession& session) { return apply(note, session, text); });
}

}  // namespace zelvane::cli
