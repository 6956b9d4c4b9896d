// An edge of the panel that can be dragged. Invisible, lies over the content; what can be pressed
// there goes first. Main thread.
#pragma once

#include <QtCore/QPointer>
#include <QtWidgets/QAbstractButton>
#include <QtWidgets/QWidget>
#include <functional>

namespace zelvane {

class EdgeGrip : public QWidget {
 public:
  /// How thick it is, in points.
  static constexpr int thickness = 6;

  struct Callbacks {
    std::function<void()> began;
    std::function<void(QPoint)> moved;  ///< by how much, since the drag began
    std::function<void()> ended;
  };

  EdgeGrip(QWidget* parent, Qt::CursorShape cursor, Callbacks callbacks);

 protected:
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;

 private:
  QAbstractButton* buttonUnder(const QPoint& onScreen) const;
  void handDown(const QMouseEvent& event);

  Callbacks callbacks_;
  Qt::CursorShape cursor_;
  QPointer<QAbstractButton> button_;  ///< that was pressed through the edge
  QPoint start_;
  bool dragging_ = false;
};

}  // namespace zelvane
