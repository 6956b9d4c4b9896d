// A text in a row that can be pressed. Main thread.
#pragma once

#include <QtWidgets/QAbstractButton>
#include <functional>

#include "app/ui/column/row_view.h"

namespace zelvane {

class TextButton : public QAbstractButton {
 public:
  TextButton(QWidget* parent, std::function<void()> action);
  void setLook(const TextButtonLook& look);
  void setOpacity(double opacity);

 protected:
  void paintEvent(QPaintEvent*) override;

 private:
  Rgb color_;
  double opacity_ = 1;
};

/// How wide the button is with the title, in points.
int textButtonWidth(const std::string& title);

/// How high every such button is.
int textButtonHeight();

}  // namespace zelvane
