#include "app/ui/column/terminal_button.h"

#include <QtGui/QPainter>

#include "core/localization.h"

#include "app/ui/column/focus.h"
#include "app/ui/column/text_style.h"

namespace zelvane {
namespace {

constexpr int pixels = 9;
constexpr double labelOpacity = 0.9, letterOpacity = 0.85;
constexpr double disabledLabel = 0.35, disabledLetter = 0.3;

}  // namespace

TerminalButton::TerminalButton(QWidget* parent, std::function<void()> wanted)
    : QAbstractButton(parent) {
  setFocusPolicy(Qt::TabFocus);
  setText(QString::fromStdString(L("터미널로 이동")));
  QObject::connect(this, &QAbstractButton::clicked, this, std::move(wanted));
}

void TerminalButton::setLook(const TerminalButtonLook& look, RowSize rowSize, double opacity) {
  look_ = look;
  rowSize_ = rowSize;
  opacity_ = opacity;
  setEnabled(look.enabled);
  update();
}

void TerminalButton::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  const double disabled = look_.compact ? disabledLetter : disabledLabel;
  painter.setOpacity(opacity_ * (look_.enabled ? 1 : disabled));
  painter.setPen(toColor(look_.color, look_.compact ? letterOpacity : labelOpacity));
  painter.setFont(columnFont(pixels, Weight::regular));
  painter.drawText(rect(), Qt::AlignCenter, look_.compact ? QStringLiteral("T") : text());
  paintFocusRing(painter, *this, look_.color);
}

/// A disabled button of the toolkit swallows clicks; here they are for the row.
bool TerminalButton::event(QEvent* event) {
  return isEnabled() ? QAbstractButton::event(event) : QWidget::event(event);
}

bool TerminalButton::hitButton(const QPoint& point) const {
  if (rowSize_ == RowSize::big) return rect().contains(point);
  return rect().contains(point) && outsideCharacter(point, width());
}

bool outsideCharacter(const QPoint& point, int width) {
  constexpr int bar = 4, stem = 9;
  return point.x() < (point.y() < bar ? width : stem);
}

}  // namespace zelvane
