// Where everything in a row lies, so that painting only paints.
#pragma once

#include <QtCore/QPoint>
#include <QtCore/QRect>
#include <QtGui/QColor>
#include <QtGui/QFont>
#include <vector>

#include "app/ui/column/row_view.h"

namespace zelvane {

/// A text on one line, cut to fit.
struct PlacedText {
  QString text;
  QFont font;
  QColor color;
  QRect box;
  int baseline = 0;  ///< y of the baseline
};

struct RowLayout {
  int height = 0;
  std::vector<PlacedText> texts;  ///< without the time
  QRect character;                ///< the place of the row's character
  QRect tile;                     ///< of code rain; empty where the title needs the room
  QRect terminalButton;
  PlacedText time;
  QRect noteSymbol;  ///< empty without a memo, and in a big row
  QRect title;       ///< of a big row; a tap on it edits the title
  QRect memoGround;  ///< of a big row's memo
  QRect editor;      ///< the place of the open one; empty without
  QRect memoButton;
  QRect effortButton;
  QRect progressTrack;
};

/// What of a row's layout is needed before it is seen: all of a big one; of a small one the height
/// and what needs no text measured, which would take most of the time.
RowLayout rowOutline(const RowView& view, int width);

/// Lays the whole row out in the width.
RowLayout rowLayout(const RowView& view, int width);

/// The working time of a small row, placed anew when its text changed.
PlacedText placedTime(const RowView& view, int width, int rowHeight);

}  // namespace zelvane
