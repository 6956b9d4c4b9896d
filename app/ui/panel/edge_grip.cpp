#include "app/ui/panel/edge_grip.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QPointer>
#include <utility>

namespace zelvane {
namespace {

/// How far, in points, a press may wander and still be a tap.
constexpr int tapSlack = 3;

}  // namespace

EdgeGrip::EdgeGrip(QWidget* parent, Callbacks callbacks)
    : QWidget(parent), callbacks_(std::move(callbacks)) {}

/// What the pointer would be on without the grip.
QWidget* EdgeGrip::beneath(const QPoint& place) {
  setAttribute(Qt::WA_TransparentForMouseEvents);
  QWidget* found = parentWidget()->childAt(mapToParent(place));
  setAttribute(Qt::WA_TransparentForMouseEvents, false);
  return found;
}

void EdgeGrip::mousePressEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton) return;
  press_.reset(event->clone());
}

void EdgeGrip::mouseMoveEvent(QMouseEvent* event) {
  if (!press_) return;
  // On the screen, not in the widget: the widget moves along with the edge.
  const QPoint by = (event->globalPosition() - press_->globalPosition()).toPoint();
  if (!dragging_ && by.manhattanLength() > tapSlack) {
    dragging_ = true;
    callbacks_.began();
  }
  if (dragging_) callbacks_.moved(by);
}

void EdgeGrip::mouseReleaseEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton) return;
  if (std::exchange(dragging_, false)) {
    callbacks_.ended();
  } else if (press_) {
    tapBeneath(*event);
  }
  press_.reset();
}

/// Hands the press and the release on, at the place of the press.
void EdgeGrip::tapBeneath(const QMouseEvent& release) {
  const QPointer<QWidget> target = beneath(press_->position().toPoint());
  const auto handOn = [&](const QMouseEvent& event) {
    if (!target) return;  // what was pressed may be gone by the release
    QMouseEvent same(event.type(), target->mapFromGlobal(press_->globalPosition()),
                     press_->globalPosition(), event.button(), event.buttons(), event.modifiers());
    QCoreApplication::sendEvent(target, &same);
  };
  handOn(*press_);
  handOn(release);
}

void EdgeGrip::contextMenuEvent(QContextMenuEvent* event) {
  auto* target = beneath(event->pos());
  if (!target) return event->ignore();
  QContextMenuEvent same(event->reason(), target->mapFromGlobal(event->globalPos()),
                         event->globalPos(), event->modifiers());
  QCoreApplication::sendEvent(target, &same);
}

void EdgeGrip::wheelEvent(QWheelEvent* event) {
  // The toolkit hands such an event to nobody else when the first one does not want it.
  for (auto* target = beneath(event->position().toPoint()); target && target != parentWidget();
       target = target->parentWidget()) {
    QWheelEvent same(target->mapFromGlobal(event->globalPosition()), event->globalPosition(),
                     event->pixelDelta(), event->angleDelta(), event->buttons(), event->modifiers(),
                     event->phase(), event->inverted());
    QCoreApplication::sendEvent(target, &same);
    if (same.isAccepted()) return;
  }
}

}  // namespace zelvane
