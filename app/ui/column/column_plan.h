// What stands in the column, from top to bottom. Pure, without the toolkit.
#pragma once

#include <cstddef>
#include <limits>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "app/ui/column/row_size.h"
#include "app/ui/column/row_view.h"

namespace zelvane {

/// Heads a section.
struct SectionBand {
  std::string title;
  int count = 0;  ///< of the rows in the section
  bool operator==(const SectionBand&) const = default;
};

/// Stands between two rows of a section.
struct Divider {
  bool operator==(const Divider&) const = default;
};

struct PlannedRow {
  ZelvaneSession session;
  RowView view;
};

using ColumnItem = std::variant<SectionBand, Divider, PlannedRow>;

/// The rows block of the sessions, which come ordered, or of the first `mostRows` of them;
/// `context` without what `opened` tells.
std::vector<ColumnItem> columnPlan(const std::vector<ZelvaneSession>& sessions,
                                   const Opened& opened, const RowContext& context,
                                   std::size_t mostRows = std::numeric_limits<std::size_t>::max());

/// What the header says; empty texts are left out.
struct HeaderTexts {
  std::string name;
  std::string tabs;
  std::string waiting;
  std::string done;
  bool operator==(const HeaderTexts&) const = default;
};

HeaderTexts headerTexts(const std::vector<ZelvaneSession>& sessions);

/// The header's arrangements, from wide to narrow.
enum class HeaderForm {
  full,
  withoutTabs,
  compact,  ///< only how many wait
};

/// The first arrangement that fits into the width.
HeaderForm headerForm(int available, int fullWidth, int widthWithoutTabs);

}  // namespace zelvane
