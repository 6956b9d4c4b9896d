// The menu of a row. Pure, without the toolkit.
#pragma once

#include <string>
#include <vector>

#include "app/model/records/session.h"
#include "app/ui/column/row_wish.h"

namespace zelvane {

struct RowMenuItem {
  std::string title;
  RowWish wish;
  bool operator==(const RowMenuItem&) const = default;
};

/// The lines, from top to bottom.
std::vector<RowMenuItem> rowMenu(const ZelvaneSession& session);

}  // namespace zelvane
