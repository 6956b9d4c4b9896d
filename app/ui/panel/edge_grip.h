// An edge of the panel that can be dragged. Invisible, lies over the content; whatever is no drag
// goes to what lies beneath. Main thread.
#pragma once

#include <QtGui/QMouseEvent>
#include <QtWidgets/QWidget>
#include <functional>
#include <memory>

namespace zelvane {

class EdgeGrip : public QWidget {
 public:
  /// How thick it is, in points.
  static constexpr int thickness = 6;

  struct Callbacks {
    std::function<void()> began;
    std::function<void(QPoint)> moved;  ///< by how much, since the press
    std::function<void()> ended;
  };

  EdgeGrip(QWidget* parent, Callbacks callbacks);

 protected:
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void contextMenuEvent(QContextMenuEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;

 private:
  QWidget* beneath(const QPoint& place);
  void tapBeneath(const QMouseEvent& release);

  Callbacks callbacks_;
  std::unique_ptr<QMouseEvent> press_;  ///< while the button is down
  bool dragging_ = false;
};

}  // namespace zelvane
