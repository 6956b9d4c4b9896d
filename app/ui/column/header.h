// The column's header: name, counts and the menu button. Main thread.
#pragma once

#include <QtWidgets/QAbstractButton>
#include <QtWidgets/QWidget>
#include <functional>
#include <vector>

#include "app/ui/column/column_plan.h"
#include "app/ui/theme.h"

namespace zelvane {

/// Opens the column's menu.
class MenuButton : public QAbstractButton {
 public:
  explicit MenuButton(QWidget* parent);
  void setColor(Rgb color);
  QSize sizeHint() const override;

 protected:
  void paintEvent(QPaintEvent*) override;

 private:
  Rgb color_;
};

class Header : public QWidget {
 public:
  /// `menuWanted` gets the pointer's place on the screen.
  Header(QWidget* parent, std::function<void(QPoint)> menuWanted);

  void setTexts(const HeaderTexts& texts, const ThemeSpec& theme);
  int wantedHeight() const;
  /// The texts that are drawn at the present width, from left to right.
  std::vector<std::string> shownTexts() const;

 protected:
  void paintEvent(QPaintEvent*) override;
  void resizeEvent(QResizeEvent*) override;

 private:
  struct Part {
    RowText text;
    int pixels;
  };
  std::vector<Part> parts(HeaderForm form) const;
  int widthOf(const std::vector<Part>& parts) const;
  HeaderForm fittingForm() const;

  HeaderTexts texts_;
  ThemeSpec theme_;
  MenuButton menuButton_;
};

}  // namespace zelvane
