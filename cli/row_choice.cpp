#include "cli/row_choice.h"

#include <algorithm>
#include <charconv>

namespace zelvane::cli {
namespace {

std::optional<std::size_t> number(const std::string& text) {
  std::size_t value = 0;
  const auto* end = text.data() + text.size();
  const auto [rest, error] = std::from_chars(text.data(), end, value);
  if (error != std::errc() || rest != end) return std::nullopt;
  return value;
}

}  // namespace

std::variant<ZelvaneSession, NoRow> chosenRow(const std::vector<ZelvaneSession>& rows,
                                              const std::string& wanted) {
  const auto exact =
      std::find_if(rows.begin(), rows.end(), [&](const auto& row) { return row.id == wanted; });
  if (exact != rows.end()) return *exact;
  const auto place = number(wanted);
  if (place && *place >= 1 && *place <= rows.size()) return rows[*place - 1];

  const ZelvaneSession* found = nullptr;
  for (const auto& row : rows) {
    if (wanted.empty() || !row.id.starts_with(wanted)) continue;
    if (found && found->id != row.id) return NoRow::ambiguous;
    found = &row;
  }
  if (found) return *found;
  return NoRow::unknown;
}

}  // namespace zelvane::cli
