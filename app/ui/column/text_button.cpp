#include "app/ui/column/text_button.h"

#include <QtGui/QPainter>
#include <utility>

#include "app/ui/column/focus.h"
#include "app/ui/column/text_style.h"

namespace zelvane {
namespace {

constexpr int pixels = 11;
constexpr double pressedOpacity = 0.6;

QFont buttonFont() { return columnFont(pixels, Weight::regular); }

}  // namespace

TextButton::TextButton(QWidget* parent, std::function<void()> action) : QAbstractButton(parent) {
  setFocusPolicy(Qt::TabFocus);
  connect(this, &QAbstractButton::clicked, this, std::move(action));
}

void TextButton::setLook(const TextButtonLook& look) {
  setText(QString::fromStdString(look.title));
  const auto tip = QString::fromStdString(look.tip);
  setToolTip(tip.isEmpty() ? tip : "<p>" + tip.toHtmlEscaped() + "</p>");  // so that it wraps
  setAccessibleDescription(tip);
  color_ = look.color;
  update();
}

void TextButton::setOpacity(double opacity) {
  if (std::exchange(opacity_, opacity) != opacity) update();
}

void TextButton::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setOpacity(opacity_ * (isDown() ? pressedOpacity : 1));
  painter.setPen(toColor(color_));
  const auto font = buttonFont();
  painter.setFont(font);
  painter.drawText(QPointF(0, baselineOffset(pixels)), elided(text().toStdString(), font, width()));
  paintFocusRing(painter, *this, color_);
}

int textButtonWidth(const std::string& title) {
  return textWidth(QString::fromStdString(title), buttonFont());
}

int textButtonHeight() { return lineHeight(pixels); }

}  // namespace zelvane
