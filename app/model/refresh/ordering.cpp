#include "app/model/refresh/ordering.h"

#include <algorithm>
#include <map>
#include <string_view>
#include <tuple>

namespace zelvane {
namespace {

int rank(const ZelvaneSession& row) {
  switch (row.state) {
    case ZelvaneState::waiting:
      return 1;
    case ZelvaneState::working:
      return 2;
    case ZelvaneState::agents:
      return 3;
    case ZelvaneState::done:
      return 4;
    case ZelvaneState::idle:
      return row.today ? 5 : 6;
  }
  return 7;
}

}  // namespace

void orderRows(std::vector<ZelvaneSession>& rows, const std::vector<std::string>& pins) {
  std::map<std::string_view, std::size_t> places;
  for (std::size_t i = 0; i < pins.size(); ++i) places.emplace(pins[i], i);

  // The rules in their order, each smaller value first. Among pinned rows only the pins count.
  const auto key = [&](const ZelvaneSession& row) {
    const auto place = places.find(row.id);
    const bool pinned = place != places.end();
    const auto since = row.since.value_or(distantPast);
    return std::make_tuple(!row.ongoing(), pinned ? place->second : pins.size(),
                           pinned ? 0 : rank(row), pinned ? 0.0 : -secondsSince1970(since));
  };
  std::stable_sort(rows.begin(), rows.end(),
                   [&](const auto& a, const auto& b) { return key(a) < key(b); });
}

}  // namespace zelvane
