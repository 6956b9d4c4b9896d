#include "app/ui/panel/column_panel.h"

#include <QtGui/QCloseEvent>
#include <QtGui/QWindow>
#include <QtWidgets/QApplication>
#include <chrono>

#include "app/ui/column/column_shape.h"
#include "app/ui/motion/cross_fade.h"
#include "app/ui/panel/screens.h"

namespace zelvane {
namespace {

using namespace std::chrono_literals;

QRect toRect(const Area& area) { return {area.x, area.y, area.width, area.height}; }

Area toArea(const QRect& rect) { return {rect.x(), rect.y(), rect.width(), rect.height()}; }

Qt::WindowType kind() { return platform::columnIsToolWindow() ? Qt::Tool : Qt::Window; }

}  // namespace

ColumnPanel::ColumnPanel(PanelSize& size, Callbacks callbacks)
    : QWidget(nullptr, kind() | Qt::FramelessWindowHint | Qt::WindowDoesNotAcceptFocus),
      size_(size),
      callbacks_(std::move(callbacks)),
      leftGrip_(this, dragging(/*width=*/true, /*height=*/false)),
      freeGrip_(this, dragging(/*width=*/false, /*height=*/true)),
      cornerGrip_(this, dragging(/*width=*/true, /*height=*/true)) {
  qApp->installEventFilter(this);
  setAttribute(Qt::WA_TranslucentBackground);
  setAttribute(Qt::WA_AlwaysShowToolTips);  // the window is never the active one
  setWindowTitle(QStringLiteral("Zelvane"));
  animation_.setDuration(static_cast<int>(changeTakes.count()));
  animation_.setEasingCurve(QEasingCurve::InOutSine);
  connect(&animation_, &QVariantAnimation::valueChanged, this,
          [this](const QVariant& value) { takeFrame(value.toRect()); });
  keysDue_.setSingleShot(true);
  keysDue_.setInterval(150ms);
  connect(&keysDue_, &QTimer::timeout, this, [this] {
    if (!window_) return;
    takesKeys_ ? window_->insistOnKeyboard() : window_->insistOnReturn();
  });
  grantDue_.setSingleShot(true);
  grantDue_.setInterval(50ms);
  connect(&grantDue_, &QTimer::timeout, this, &ColumnPanel::drawAgain);
  look_.setInterval(1s);
  look_.setTimerType(Qt::CoarseTimer);
  connect(&look_, &QTimer::timeout, this, &ColumnPanel::lookAround);
  winId();  // the window system makes it while the content is being made
}

/// The content goes first: what happens to it while a window is closed may still come here.
ColumnPanel::~ColumnPanel() { delete content_; }

void ColumnPanel::setContent(QWidget* content) {
  content_ = content;
  content_->setParent(this);
  content_->setGeometry(rect());
  content_->show();
  for (auto* grip : {&leftGrip_, &freeGrip_, &cornerGrip_}) grip->raise();
}

void ColumnPanel::appear() {
  const WId window = winId();
  QGuiApplication::sync();  // the window system has to know the window by now
  window_ = platform::ColumnWindow::of(QGuiApplication::platformName().toStdString(), window);
  if (window_) window_->standAside();
  holdPicture();
  place();
  updateShape();
  show();
  if (window_) window_->comeForward();
}

void ColumnPanel::setContentHeight(int height) {
  contentHeight_ = height;
  place();
}

void ColumnPanel::setAnchor(Anchor anchor) {
  anchor_ = anchor;
  holdPicture();
  placeGrips();
  place();
}

void ColumnPanel::place() {
  const auto screen = usableScreen();
  if (dragging_ || !screen) return;
  moveTo(panelFrame(size_.chosen(), contentHeight_, anchor_, *screen));
}

void ColumnPanel::moveTo(const Area& wanted) {
  const bool animating = animation_.state() == QAbstractAnimation::Running;
  const QRect target = animating ? animation_.endValue().toRect() : frame();
  if (target == toRect(wanted)) return;
  animation_.stop();
  if (isVisible() && !still_ && growsSmoothly(toArea(frame()), wanted)) {
    animateTo(wanted);
  } else {
    takeFrame(toRect(wanted));
  }
}

/// Its frame, or the one that it is about to have.
QRect ColumnPanel::frame() const { return grantDue_.isActive() ? asked_ : geometry(); }

void ColumnPanel::animateTo(const Area& wanted) {
  {
    // An animation that is over would pass through its new end at once.
    const QSignalBlocker quiet(&animation_);
    // The edge at the anchor must stay where it is, wherever an animation was interrupted.
    animation_.setStartValue(frame());
    animation_.setEndValue(toRect(wanted));
  }
  animation_.start();
}

/// Where a window manager has yet to grant a frame, nothing is drawn until it has: laid out for the
/// new height, or drawn into a window that has it already, rows would be seen in the wrong place.
void ColumnPanel::takeFrame(const QRect& wanted) {
  // Position and size in one call: set apart, a column anchored below would jump.
  const bool grantedLater = isVisible() && window_ && window_->grantsFramesLater();
  if (!grantedLater || anchor_ == Anchor::top) return setGeometry(wanted);
  const bool resizes = wanted.size() != frame().size();
  asked_ = wanted;
  if (resizes) {
    setUpdatesEnabled(false);
    grantDue_.start();
  }
  updateShape();
  windowHandle()->setGeometry(wanted);
}

void ColumnPanel::drawAgain() {
  grantDue_.stop();
  updateShape();
  setUpdatesEnabled(true);
}

/// While the window has another height than its picture, the edge at the anchor counts.
void ColumnPanel::holdPicture() {
  if (window_) window_->holdPictureBelow(anchor_ == Anchor::bottom);
}

void ColumnPanel::resizeEvent(QResizeEvent*) {
  if (content_) content_->setGeometry(rect());
  placeGrips();
  updateShape();
  // It may be an earlier one that was granted.
  if (grantDue_.isActive() && size() == asked_.size()) drawAgain();
}

void ColumnPanel::placeGrips() {
  constexpr int grip = EdgeGrip::thickness;
  constexpr int corner = 2 * grip;  // it is round: of a smaller one there would be nothing left
  const bool below = anchor_ == Anchor::top;
  leftGrip_.setGeometry(0, below ? 0 : corner, grip, height() - corner);
  freeGrip_.setGeometry(corner, below ? height() - grip : 0, width() - corner, grip);
  cornerGrip_.setGeometry(0, below ? height() - corner : 0, corner, corner);
  leftGrip_.setCursor(Qt::SizeHorCursor);
  freeGrip_.setCursor(Qt::SizeVerCursor);
  cornerGrip_.setCursor(below ? Qt::SizeBDiagCursor : Qt::SizeFDiagCursor);
}

/// Without translucency the corners would be black: then they are cut off, if less smoothly. A mask
/// that is too low for a window that grows would hide its last row.
void ColumnPanel::updateShape() {
  const bool cut = window_ && !window_->translucencyWorks();
  const QSize shown = grantDue_.isActive() ? size().expandedTo(asked_.size()) : size();
  const QSize wanted = cut ? shown : QSize();
  if (std::exchange(cutFor_, wanted) == wanted) return;
  if (cut) {
    setMask(columnMask(wanted));
  } else {
    clearMask();
  }
}

bool ColumnPanel::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::Quit) programEnds_ = true;
  if (event->type() == QEvent::Expose && watched == windowHandle()) {
    // The window's own state changes only when the event has been handled.
    QTimer::singleShot(0, this, &ColumnPanel::lookAround);
  }
  if (event->type() == QEvent::Show && window_) {
    auto* popup = qobject_cast<QWindow*>(watched);
    if (popup && popup->type() == Qt::Popup) window_->leaveFocusAlone(popup->winId());
  }
  return QWidget::eventFilter(watched, event);
}

void ColumnPanel::lookAround() {
  const bool exposed = windowHandle() && windowHandle()->isExposed();
  const bool covered = exposed && window_ && window_->covered();
  updateShape();
  const bool seen = exposed && !covered;
  if (std::exchange(seen_, seen) != seen) callbacks_.onVisible(seen);
}

void ColumnPanel::setLooksOften(bool often) {
  // A window that merely moves away from in front of this one is reported by nobody.
  if (often && !look_.isActive()) look_.start();
  if (!often) look_.stop();
}

void ColumnPanel::setTakesKeys(bool takes) {
  if (std::exchange(takesKeys_, takes) == takes) return;
  acceptKeys(takes);
  if (takes) {
    if (window_) window_->borrowKeyboard();
    activateWindow();
  } else {
    if (auto* last = focusWidget()) last->clearFocus();
    if (window_) window_->returnKeyboard();
  }
  // The toolkit believes that its request was granted, whatever came of it.
  keysDue_.start();
}

void ColumnPanel::acceptKeys(bool accept) {
  const auto change = [&] {
    windowHandle()->setFlag(Qt::WindowDoesNotAcceptFocus, !accept);
    overrideWindowFlags(windowHandle()->flags());
  };
  window_ ? window_->change(change) : change();
}

bool ColumnPanel::event(QEvent* event) {
  // What never came is not lost: the end of a menu's own hold on the keys looks like that.
  const auto waits = [this] { return window_ && keysDue_.isActive() && !window_->keyboardCame(); };
  if (event->type() == QEvent::WindowDeactivate && takesKeys_ && !waits()) callbacks_.onKeysLost();
  return QWidget::event(event);
}

/// A window manager's key closes the window that has the keys: that ends the typing, not the
/// column.
void ColumnPanel::closeEvent(QCloseEvent* event) {
  event->setAccepted(programEnds_);
  if (!programEnds_) callbacks_.onKeysLost();
}

/// What dragging an edge does that chooses the width, the height or both.
EdgeGrip::Callbacks ColumnPanel::dragging(bool width, bool height) {
  return {.began = [this] { beginDrag(); },
          .moved =
              [this, width, height](QPoint by) {
                const int down = anchor_ == Anchor::top ? by.y() : -by.y();
                dragBy(width ? -by.x() : 0, height ? down : 0);
              },
          .ended = [this] { endDrag(); }};
}

void ColumnPanel::beginDrag() {
  if (animation_.state() == QAbstractAnimation::Running) return;
  dragging_ = true;
  dragStart_ = {width(), height()};
  chosenAtStart_ = size_.chosen();
}

void ColumnPanel::dragBy(int wider, int taller) {
  const auto screen = usableScreen();
  if (!dragging_ || !screen) return;
  const Extent wanted{dragStart_.width + wider, dragStart_.height + taller};
  const Extent now = draggedSize(dragStart_, wanted, *screen);
  // The content lays itself out by the chosen sizes as soon as the panel has another one.
  size_.preview(chosenAfterDrag(chosenAtStart_, dragStart_, now));
  QRect frame = geometry();
  frame.setLeft(frame.right() + 1 - now.width);
  if (anchor_ == Anchor::top) {
    frame.setHeight(now.height);
  } else {
    frame.setTop(frame.bottom() + 1 - now.height);
  }
  takeFrame(frame);
}

void ColumnPanel::endDrag() {
  if (!std::exchange(dragging_, false)) return;
  size_.set(size_.chosen());
  place();
}

}  // namespace zelvane
