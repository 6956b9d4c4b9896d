#include "app/ui/panel/edge_grip.h"

#include <QtGui/QMouseEvent>

namespace zelvane {

EdgeGrip::EdgeGrip(QWidget* parent, Qt::CursorShape cursor, Callbacks callbacks)
    : QWidget(parent), callbacks_(std::move(callbacks)) {
  setCursor(cursor);
}

void EdgeGrip::mousePressEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton) return;
  // On the screen, not in the widget: the widget moves along with the edge.
  start_ = event->globalPosition().toPoint();
  dragging_ = true;
  callbacks_.began();
}

void EdgeGrip::mouseMoveEvent(QMouseEvent* event) {
  if (dragging_) callbacks_.moved(event->globalPosition().toPoint() - start_);
}

void EdgeGrip::mouseReleaseEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton || !dragging_) return;
  dragging_ = false;
  callbacks_.ended();
}

}  // namespace zelvane
