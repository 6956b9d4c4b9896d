// One row of the column. Draws its RowView; asks nobody anything. Main thread.
#pragma once

#include <QtWidgets/QWidget>
#include <functional>
#include <memory>

#include "app/ui/column/row_layout.h"
#include "app/ui/column/row_view.h"
#include "app/ui/column/row_wish.h"
#include "app/ui/column/terminal_button.h"
#include "app/ui/column/text_button.h"
#include "app/ui/friends/friend_view.h"
#include "app/ui/motion/cross_fade.h"
#include "app/ui/motion/stage.h"
#include "app/ui/rain/code_rain.h"

namespace zelvane {

class RowWidget : public QWidget {
 public:
  struct Callbacks {
    std::function<void(RowWish)> wished;
    std::function<void(QPoint)> menuWanted;  ///< at a point on the screen
    std::function<void()> grew;              ///< or shrank, on its way to the height it wants
  };

  /// The stage must outlive the row.
  RowWidget(QWidget* parent, Stage& stage, Callbacks callbacks);

  /// Shows the view at the width; repaints only when something changed.
  void setView(const RowView& view, int width);
  const RowView& view() const { return view_; }
  int wantedHeight() const { return layout_.height; }
  /// That, or less or more while the row opens or closes.
  int shownHeight() const { return fade_ ? fade_->heightTowards(layout_.height) : layout_.height; }
  /// Where the open editor belongs; empty without.
  const QRect& editorPlace() const { return layout_.editor; }
  /// Writes a running working time anew.
  void showTime(Time now);

  /// As a tap, a right click and the terminal button.
  void tap() { callbacks_.wished(RowWish::tap); }
  void openMenu();
  void openTerminal() { callbacks_.wished(RowWish::pressTerminalButton); }

 protected:
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void contextMenuEvent(QContextMenuEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  bool event(QEvent* event) override;

 private:
  bool fadesInto(const RowView& view, int width) const;
  void placeButton(std::unique_ptr<TextButton>& button, const std::optional<TextButtonLook>& look,
                   const QRect& place, RowWish wish);
  void fadeButtons();
  void arrange();
  void paintFrame(QPainter& painter) const;
  void paintGrounds(QPainter& painter) const;
  void showMemoTip(const QPoint& position, const QPoint& onScreen);

  Callbacks callbacks_;
  RowView view_;
  RowLayout layout_;
  int width_ = 0;
  bool arranged_ = true;  ///< what is seen follows the view
  bool pressed_ = false;
  std::unique_ptr<CrossFade> fade_;  ///< while the row opens or closes
  FriendView character_;
  CodeRain rain_;
  TerminalButton terminalButton_;
  std::unique_ptr<TextButton> memoButton_, effortButton_;  ///< made when first needed
};

}  // namespace zelvane
