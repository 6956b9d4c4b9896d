// The window that the column lives in: at the right edge of the screen, never in the way. It takes
// the keys only while it is told to, places itself, and knows whether it can be seen. Main thread.
#pragma once

#include <QtCore/QTimer>
#include <QtCore/QVariantAnimation>
#include <QtWidgets/QWidget>
#include <functional>
#include <memory>

#include "platform/column_window.h"

#include "app/ui/panel/edge_grip.h"
#include "app/ui/panel/panel_size.h"
#include "app/ui/panel/placement.h"

namespace zelvane {

class ColumnPanel : public QWidget {
 public:
  struct Callbacks {
    /// Gets whether at least a part of the panel can be seen, when that changes.
    std::function<void(bool)> onVisible = [](bool) {};
    std::function<void()> onKeysLost = [] {};  ///< to another window
  };

  ColumnPanel(PanelSize& size, Callbacks callbacks);
  ~ColumnPanel() override;

  /// Fills the panel with the widget, which it owns from then on.
  void setContent(QWidget* content);
  /// Shows the window where it belongs, behind nothing, without a change of the focus.
  void appear();
  void setContentHeight(int height);
  void setAnchor(Anchor anchor);
  /// Moves to where the content, the chosen sizes and the screen want it; growing is animated.
  void place();
  /// Whether it changes its height at once, for those who want nothing to move.
  void setStill(bool still) { still_ = still; }
  /// Looks again whether other windows hide it; once a second while `often`.
  void lookAround();
  void setLooksOften(bool often);
  /// While set the panel has the keys; then they go back to the window that had them.
  void setTakesKeys(bool takes);

 protected:
  bool event(QEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;
  void resizeEvent(QResizeEvent*) override;
  void closeEvent(QCloseEvent* event) override;

 private:
  QRect frame() const;
  void moveTo(const Area& wanted);
  void animateTo(const Area& wanted);
  void takeFrame(const QRect& wanted);
  void drawAgain();
  void holdPicture();
  void placeGrips();
  void updateShape();
  void acceptKeys(bool accept);
  EdgeGrip::Callbacks dragging(bool width, bool height);
  void beginDrag();
  void dragBy(int wider, int taller);
  void endDrag();

  PanelSize& size_;
  Callbacks callbacks_;
  std::unique_ptr<platform::ColumnWindow> window_;  ///< null where the system offers none
  QWidget* content_ = nullptr;
  int contentHeight_ = 200;
  Anchor anchor_ = Anchor::top;

  QVariantAnimation animation_;
  QRect asked_;      ///< the frame that a window manager has yet to grant
  QTimer grantDue_;  ///< by then a frame that was asked for is there, or will not come
  bool dragging_ = false;
  Extent dragStart_;
  ChosenSize chosenAtStart_;

  bool programEnds_ = false;  ///< it was asked to: then windows close

  bool still_ = false;
  bool takesKeys_ = false;
  QTimer keysDue_;  ///< by then the window manager has moved the keys, or will not

  QSize cutFor_;  ///< the size that the mask is made for; invalid without one
  bool seen_ = true;
  QTimer look_;
  EdgeGrip leftGrip_;
  EdgeGrip freeGrip_;    ///< at the edge that the panel is not anchored to
  EdgeGrip cornerGrip_;  ///< where both meet
};

}  // namespace zelvane
