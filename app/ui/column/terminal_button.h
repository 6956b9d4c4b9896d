// The small control on a row that goes to the session's terminal. Main thread.
#pragma once

#include <QtWidgets/QAbstractButton>
#include <functional>

#include "app/ui/column/row_view.h"

namespace zelvane {

class TerminalButton : public QAbstractButton {
 public:
  TerminalButton(QWidget* parent, std::function<void()> wanted);
  /// `opacity` is the row's.
  void setLook(const TerminalButtonLook& look, RowSize rowSize, double opacity);

 protected:
  void paintEvent(QPaintEvent*) override;
  bool event(QEvent* event) override;
  bool hitButton(const QPoint& point) const override;

 private:
  TerminalButtonLook look_;
  RowSize rowSize_ = RowSize::small;
  double opacity_ = 1;
};

/// Where the compact button over a small row's corner takes clicks: a T whose stem stands at the
/// leading edge, so that it lies wholly outside of the character's frame.
bool outsideCharacter(const QPoint& point, int width);

}  // namespace zelvane
