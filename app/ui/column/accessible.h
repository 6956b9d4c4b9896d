// What a screen reader is told about the column's own widgets. Main thread.
#pragma once

namespace zelvane {

class RowWidget;

/// Gives rows, cards and the header their roles and actions; once or more often.
void makeColumnAccessible();

/// Has a reader that is there look at the row again. The row's texts are not kept by the toolkit:
/// it would make what a reader needs for every row, though there is none.
void tellRowChanged(RowWidget& row);

}  // namespace zelvane
