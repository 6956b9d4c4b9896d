#include "app/ui/column/focus.h"

#include <QtWidgets/QScrollArea>
#include <algorithm>
#include <iterator>
#include <tuple>
#include <vector>

#include "app/ui/column/text_style.h"

namespace zelvane {
namespace {

std::vector<QWidget*> reachable(const QWidget& column) {
  std::vector<QWidget*> found;
  for (auto* widget : column.findChildren<QWidget*>()) {
    const bool takes = (widget->focusPolicy() & Qt::TabFocus) != 0;
    if (takes && widget->isEnabled() && widget->isVisibleTo(&column)) found.push_back(widget);
  }
  const auto place = [&](const QWidget* widget) {
    const QPoint corner = widget->mapTo(&column, QPoint());
    return std::tuple(corner.y(), corner.x());
  };
  std::stable_sort(found.begin(), found.end(),
                   [&](const auto* one, const auto* other) { return place(one) < place(other); });
  return found;
}

}  // namespace

bool moveFocus(QWidget& column, bool forward) {
  const auto order = reachable(column);
  if (order.empty()) return false;
  const auto count = static_cast<std::ptrdiff_t>(order.size());
  const auto focused = std::find(order.begin(), order.end(), column.window()->focusWidget());
  std::ptrdiff_t next = forward ? 0 : count - 1;
  if (focused != order.end()) {
    next = (std::distance(order.begin(), focused) + (forward ? 1 : count - 1)) % count;
  }
  auto* target = order[static_cast<std::size_t>(next)];
  target->setFocus(forward ? Qt::TabFocusReason : Qt::BacktabFocusReason);
  for (auto* scroll : column.findChildren<QScrollArea*>()) {
    if (scroll->isAncestorOf(target)) scroll->ensureWidgetVisible(target, 0, 0);
  }
  return true;
}

void paintFocusRing(QPainter& painter, const QWidget& widget, Rgb color) {
  if (!widget.hasFocus()) return;
  constexpr double thickness = 1.5, radius = 5, opacity = 0.75;
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setOpacity(1);
  painter.setPen(QPen(toColor(color, opacity), thickness));
  painter.setBrush(Qt::NoBrush);
  constexpr double inset = thickness / 2;
  painter.drawRoundedRect(QRectF(widget.rect()).adjusted(inset, inset, -inset, -inset), radius,
                          radius);
  painter.restore();
}

}  // namespace zelvane
