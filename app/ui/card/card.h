// A card above the rows: lines of text and buttons on a rounded ground. Main thread.
#pragma once

#include <QtWidgets/QAbstractButton>
#include <QtWidgets/QWidget>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "app/ui/card/card_content.h"
#include "app/ui/theme.h"

namespace zelvane {

/// A button on a rounded ground of its own, or on none.
class PillButton : public QAbstractButton {
 public:
  enum class Ground { none, filled };

  PillButton(QWidget* parent, const std::string& title, const ThemeSpec& theme,
             Ground ground = Ground::filled);
  void setTheme(const ThemeSpec& theme);
  QSize sizeHint() const override;

 protected:
  void paintEvent(QPaintEvent*) override;

 private:
  Ground ground_;
  ThemeSpec theme_;
};

/// A line with a box in front that can be ticked.
class TickLine : public QAbstractButton {
 public:
  explicit TickLine(QWidget* parent);
  void setColors(const ThemeSpec& theme);
  QSize sizeHint() const override;

 protected:
  void paintEvent(QPaintEvent*) override;

 private:
  ThemeSpec theme_;
};

class Card : public QWidget {
 public:
  /// `chosen` is told which button was pressed, and whether the box is ticked.
  Card(QWidget* parent, std::function<void(CardAction, bool ticked)> chosen);

  /// Shows the content at the width; nothing hides the card.
  void setContent(const std::optional<CardContent>& content, const ThemeSpec& theme, int width);
  /// With the space around it; 0 while hidden.
  int wantedHeight() const { return height_; }

 protected:
  void paintEvent(QPaintEvent*) override;

 private:
  struct Line {
    int y;  ///< of its upper edge
    QString text;
    const CardLine* style;
  };
  void arrange(int width);
  int placeTick(int y);
  int placeButtons(int y);

  std::function<void(CardAction, bool)> chosen_;
  std::optional<CardContent> content_;
  ThemeSpec theme_;
  int width_ = 0;
  int height_ = 0;
  std::vector<Line> lines_;
  std::unique_ptr<TickLine> tick_;    ///< only while there is something to tick
  std::vector<PillButton*> buttons_;  ///< owned by the widget
};

}  // namespace zelvane
