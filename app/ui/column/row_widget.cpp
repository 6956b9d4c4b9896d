#include "app/ui/column/row_widget.h"

#include <QtGui/QContextMenuEvent>
#include <QtGui/QHelpEvent>
#include <QtGui/QMouseEvent>
#include <QtGui/QPainter>
#include <QtWidgets/QToolTip>

#include "app/model/records/row_text.h"
#include "app/ui/column/accessible.h"
#include "app/ui/column/focus.h"
#include "app/ui/column/text_style.h"

namespace zelvane {
namespace {

void paintText(QPainter& painter, const PlacedText& placed) {
  if (placed.text.isEmpty()) return;
  painter.save();
  // Glyphs of a fallback font may be wider than what was measured.
  painter.setClipRect(placed.box);
  painter.setFont(placed.font);
  painter.setPen(placed.color);
  painter.drawText(QPointF(placed.box.left(), placed.baseline), placed.text);
  painter.restore();
}

/// A sheet with three lines.
void paintNoteSymbol(QPainter& painter, const QRect& box, const QColor& color) {
  const QRectF sheet = QRectF(box).adjusted(1, 0.5, -1, -0.5);
  painter.setPen(QPen(color, 1));
  painter.setBrush(Qt::NoBrush);
  painter.drawRoundedRect(sheet, 1.5, 1.5);
  for (const double share : {0.28, 0.5, 0.72}) {
    const double y = sheet.top() + share * sheet.height();
    const double end = share > 0.7 ? sheet.center().x() : sheet.right() - 2;
    painter.drawLine(QPointF(sheet.left() + 2, y), QPointF(end, y));
  }
}

}  // namespace

RowWidget::RowWidget(QWidget* parent, Stage& stage, Callbacks callbacks)
    : QWidget(parent),
      callbacks_(std::move(callbacks)),
      character_(*this, stage.driver, stage.chance),
      rain_(*this, stage.driver),
      terminalButton_(this, [this] { openTerminal(); }) {
  setFocusPolicy(Qt::TabFocus);
}

void RowWidget::setView(const RowView& view, int width) {
  if (view == view_ && width == width_) return;
  if (fadesInto(view, width)) {
    fade_ = std::make_unique<CrossFade>(*this, [this] {
      update();
      fadeButtons();
      callbacks_.grew();
    });
  }
  view_ = view;
  width_ = width;
  layout_ = rowOutline(view_, width);
  arranged_ = false;
  terminalButton_.setGeometry(layout_.terminalButton);
  placeButton(memoButton_, view_.memoButton, layout_.memoButton, RowWish::editMemo);
  placeButton(effortButton_, view_.effortButton, layout_.effortButton, RowWish::takeEffort);
  fadeButtons();
  tellRowChanged(*this);
  update();
}

/// They paint themselves, and come with the rest of a row that opens or closes.
void RowWidget::fadeButtons() {
  const double share = fade_ ? fade_->share() : 1;
  terminalButton_.setLook(view_.terminal, view_.size, view_.opacity * share);
  for (auto* button : {memoButton_.get(), effortButton_.get()}) {
    if (button) button->setOpacity(share);
  }
}

/// Whether what is seen now passes smoothly into the view.
bool RowWidget::fadesInto(const RowView& view, int width) const {
  const bool opensOrCloses = view.size != view_.size && width == width_;
  // An editor is there at once, and wants all of its room.
  const bool smoothly = !view.character.still && !view.editor;
  return opensOrCloses && smoothly && !visibleRegion().isEmpty();
}

/// Most rows are small and have none, not even a hidden one for a screen reader to find.
void RowWidget::placeButton(std::unique_ptr<TextButton>& button,
                            const std::optional<TextButtonLook>& look, const QRect& place,
                            RowWish wish) {
  if (!look) {
    if (!button) return;
    button->hide();
    return button.release()->deleteLater();  // it may be telling that it was pressed
  }
  if (!button) {
    button = std::make_unique<TextButton>(this, [this, wish] { callbacks_.wished(wish); });
    button->show();
  }
  button->setLook(*look);
  button->setGeometry(place);
}

/// When the row is seen, not before: most of three hundred rows never are.
void RowWidget::arrange() {
  if (std::exchange(arranged_, true)) return;
  if (view_.size == RowSize::small) layout_ = rowLayout(view_, width_);
  character_.configure(view_.character, layout_.character);
  rain_.configure(view_.rain, layout_.tile);
}

void RowWidget::showTime(Time now) {
  if (!view_.liveSince) return;
  auto text = workingTime(now - *view_.liveSince);
  if (text == view_.time.text) return;
  view_.time.text = std::move(text);
  if (!arranged_) return;
  const QRect before = layout_.time.box;
  layout_.time = placedTime(view_, width_, layout_.height);
  update(before | layout_.time.box);
}

void RowWidget::paintEvent(QPaintEvent* event) {
  arrange();
  // Mostly a tile or a character alone: laying out texts that are cut off would cost the most.
  const QRegion& dirty = event->region();
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  if (fade_ && fade_->over()) fade_.reset();
  if (fade_) fade_->paint(painter);
  const double opacity = view_.opacity * (fade_ ? fade_->share() : 1);
  painter.setOpacity(opacity);
  paintGrounds(painter);
  if (view_.size == RowSize::big) paintFrame(painter);
  character_.paint(painter, dirty, opacity);
  rain_.paint(painter, dirty, opacity);
  for (const auto& placed : layout_.texts) {
    if (dirty.intersects(placed.box)) paintText(painter, placed);
  }
  if (dirty.intersects(layout_.time.box)) paintText(painter, layout_.time);
  if (dirty.intersects(layout_.noteSymbol)) {
    paintNoteSymbol(painter, layout_.noteSymbol, toColor(view_.subtitle.color));
  }
  paintFocusRing(painter, *this, view_.title.color);
}

/// Around the character of a big row.
void RowWidget::paintFrame(QPainter& painter) const {
  constexpr double radius = 6, halfBorder = 0.5;
  painter.save();
  painter.setPen(QPen(toColor(view_.characterColor), 1));
  painter.setBrush(toColor(view_.scene));
  painter.drawRoundedRect(
      QRectF(layout_.character).adjusted(halfBorder, halfBorder, -halfBorder, -halfBorder), radius,
      radius);
  painter.restore();
}

void RowWidget::paintGrounds(QPainter& painter) const {
  painter.save();
  painter.setPen(Qt::NoPen);
  if (!layout_.memoGround.isEmpty()) {
    constexpr double memoRadius = 5, memoOpacity = 0.6;
    painter.setBrush(toColor(view_.line, memoOpacity));
    painter.drawRoundedRect(layout_.memoGround, memoRadius, memoRadius);
  }
  if (view_.progress && !layout_.progressTrack.isEmpty()) {
    QRectF bar = layout_.progressTrack;
    const double radius = bar.height() / 2;
    painter.setBrush(toColor(view_.line));
    painter.drawRoundedRect(bar, radius, radius);
    bar.setWidth(bar.width() * progressShare(*view_.progress));
    painter.setBrush(toColor(view_.time.color));
    painter.drawRoundedRect(bar, radius, radius);
  }
  painter.restore();
}

void RowWidget::mousePressEvent(QMouseEvent* event) {
  pressed_ = event->button() == Qt::LeftButton;
}

/// It follows a tap, which has been seen to.
void RowWidget::mouseDoubleClickEvent(QMouseEvent*) { pressed_ = false; }

void RowWidget::mouseReleaseEvent(QMouseEvent* event) {
  const bool released = pressed_ && event->button() == Qt::LeftButton;
  pressed_ = false;
  const QPoint point = event->position().toPoint();
  if (!released || !rect().contains(point)) return;
  callbacks_.wished(layout_.title.contains(point) ? RowWish::tapTitle : RowWish::tap);
}

void RowWidget::openMenu() { callbacks_.menuWanted(mapToGlobal(rect().center())); }

void RowWidget::contextMenuEvent(QContextMenuEvent* event) {
  callbacks_.menuWanted(event->globalPos());
}

void RowWidget::keyPressEvent(QKeyEvent* event) {
  const int key = event->key();
  // The menu key itself comes as a context menu event.
  if (key == Qt::Key_F10 && event->modifiers() == Qt::ShiftModifier) return openMenu();
  if (key == Qt::Key_Space || key == Qt::Key_Return || key == Qt::Key_Enter) return tap();
  event->ignore();
}

bool RowWidget::event(QEvent* event) {
  if (event->type() != QEvent::ToolTip) return QWidget::event(event);
  const auto* help = static_cast<QHelpEvent*>(event);
  showMemoTip(help->pos(), help->globalPos());
  return true;
}

void RowWidget::showMemoTip(const QPoint& position, const QPoint& onScreen) {
  if (!layout_.noteSymbol.adjusted(-3, -3, 3, 3).contains(position)) {
    QToolTip::hideText();
    return;
  }
  // As rich text, so that it wraps; escaped, because the memo is plain text.
  const auto memo = QString::fromStdString(view_.memo.text).toHtmlEscaped();
  QToolTip::showText(onScreen, "<p style='white-space:pre-wrap'>" + memo + "</p>", this);
}

}  // namespace zelvane
