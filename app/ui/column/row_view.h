// What one row shows: texts, colours and flags, all decided. Pure, without the toolkit.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "app/model/records/session.h"
#include "app/ui/column/row_size.h"
#include "app/ui/editors/editing_rules.h"
#include "app/ui/friends/friend_motion.h"
#include "app/ui/rain/rain_model.h"
#include "app/ui/theme.h"

namespace zelvane {

enum class Weight { regular, medium, semibold, bold };

/// A text as it is drawn; an empty one is left out.
struct RowText {
  std::string text;
  Rgb color;
  Weight weight = Weight::regular;
  double opacity = 1;
  bool operator==(const RowText&) const = default;
};

/// The button that goes to the session's terminal.
struct TerminalButtonLook {
  Rgb color;
  bool enabled = true;
  bool compact = false;  ///< a letter instead of a label
  bool operator==(const TerminalButtonLook&) const = default;
};

/// A text that can be pressed.
struct TextButtonLook {
  std::string title;
  Rgb color;
  std::string tip{};  ///< shown when the pointer rests on it
  bool operator==(const TextButtonLook&) const = default;
};

/// The room for an open editor, which takes the place of what it edits.
struct EditorRoom {
  EditorField field = EditorField::title;
  int height = 0;  ///< points
  bool operator==(const EditorRoom&) const = default;
};

struct RowView {
  RowSize size = RowSize::small;
  bool tappable = true;  ///< a tap opens or closes the row
  double opacity = 1;    ///< of the whole row
  FriendLook character;
  Rgb characterColor;  ///< of its frame, too
  Rgb scene;           ///< behind a big row's character
  RainLook rain;
  TerminalButtonLook terminal;
  RowText tag;  ///< in front of the title
  RowText title;
  RowText label;  ///< in front of the subtitle
  RowText subtitle;
  RowText memo;  ///< a small row shows a symbol for it
  std::optional<EditorRoom> editor;
  std::optional<TextButtonLook> memoButton;  ///< opens the memo's editor
  RowText model;
  RowText suggestion;                          ///< of another effort
  std::optional<TextButtonLook> effortButton;  ///< prepares its command
  RowText status;
  std::optional<ZelvaneSession::Progress> progress;
  RowText time;                       ///< since when; at the trailing end of a small row
  std::optional<Time> liveSince;      ///< `time` is the working time since then
  Rgb line;                           ///< grounds and tracks
  std::string accessibleName;         ///< what is spoken first
  std::string accessibleDescription;  ///< and then

  bool operator==(const RowView&) const = default;
};

/// What a row's look depends on besides its session.
struct RowContext {
  ThemeSpec theme;
  Time now;
  RowSize size = RowSize::small;
  bool liveClock = true;                        ///< working times run by the second
  bool still = false;                           ///< nothing else moves
  bool terminalButtonLearned = false;           ///< the user knows what the button does
  std::optional<EditorRoom> editor{};           ///< that is open in the row
  bool copied = false;                          ///< the command was copied a moment ago
  const std::vector<Friend>* family = nullptr;  ///< the characters; none without them
};

RowView rowView(const ZelvaneSession& session, const RowContext& context);

/// The to-do count of a row, as 3/7.
std::string progressText(const ZelvaneSession::Progress& progress);

/// The filled part of a to-do bar, 0 to 1.
double progressShare(const ZelvaneSession::Progress& progress);

}  // namespace zelvane
