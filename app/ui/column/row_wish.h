// What a user may want of a row.
#pragma once

namespace zelvane {

enum class RowWish {
  tap,                  ///< on the row itself
  tapTitle,             ///< of a big row
  pressTerminalButton,  ///< the one in the row
  open,                 ///< its terminal
  togglePin,
  rename,
  editMemo,
  acknowledge,
  takeEffort,  ///< the suggested one
};

}  // namespace zelvane
