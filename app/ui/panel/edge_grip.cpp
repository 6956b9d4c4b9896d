#include "app/ui/panel/edge_grip.h"

#include <QtCore/QCoreApplication>
#include <QtGui/QMouseEvent>
#include <utility>

namespace zelvane {

EdgeGrip::EdgeGrip(QWidget* parent, Qt::CursorShape cursor, Callbacks callbacks)
    : QWidget(parent), callbacks_(std::move(callbacks)), cursor_(cursor) {
  setCursor(cursor);
  setMouseTracking(true);
}

/// The enabled button that the edge lies over at the point.
QAbstractButton* EdgeGrip::buttonUnder(const QPoint& onScreen) const {
  for (auto* button : parentWidget()->findChildren<QAbstractButton*>()) {
    const QPoint place = button->mapFromGlobal(onScreen);
    if (!button->isEnabled() || !button->rect().contains(place)) continue;
    if (button->visibleRegion().contains(place)) return button;
  }
  return nullptr;
}

void EdgeGrip::handDown(const QMouseEvent& event) {
  const auto place = button_->mapFromGlobal(event.globalPosition());
  QMouseEvent same(event.type(), place, event.globalPosition(), event.button(), event.buttons(),
                   event.modifiers());
  QCoreApplication::sendEvent(button_, &same);
}

void EdgeGrip::mousePressEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton) return;
  // On the screen, not in the widget: the widget moves along with the edge.
  start_ = event->globalPosition().toPoint();
  button_ = buttonUnder(start_);
  if (button_) return handDown(*event);
  dragging_ = true;
  callbacks_.began();
}

void EdgeGrip::mouseMoveEvent(QMouseEvent* event) {
  const QPoint place = event->globalPosition().toPoint();
  if (dragging_) return callbacks_.moved(place - start_);
  if (button_) return handDown(*event);
  setCursor(buttonUnder(place) ? Qt::ArrowCursor : cursor_);
}

void EdgeGrip::mouseReleaseEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton) return;
  if (button_) handDown(*event);
  button_.clear();
  if (std::exchange(dragging_, false)) callbacks_.ended();
}

}  // namespace zelvane
