// The menu of a row. Pure, without the toolkit.
#pragma once

#include <string>
#include <vector>

#include "app/model/records/session.h"

namespace zelvane {

enum class RowCommand { open, togglePin, rename, editMemo, acknowledge };

struct RowMenuItem {
  std::string title;
  RowCommand command;
  bool operator==(const RowMenuItem&) const = default;
};

/// The lines, from top to bottom.
std::vector<RowMenuItem> rowMenu(const ZelvaneSession& session);

}  // namespace zelvane
