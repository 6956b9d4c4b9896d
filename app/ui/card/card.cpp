#include "app/ui/card/card.h"

#include <QtGui/QPainter>

#include "app/ui/column/focus.h"
#include "app/ui/column/text_style.h"

namespace zelvane {
namespace {

constexpr int around = 10, padding = 12, radius = 8;
constexpr int lineGap = 4, buttonGap = 8;
constexpr int pillPixels = 12, pillHorizontal = 10, pillVertical = 5, pillRadius = 6;
constexpr int tickPixels = 11, boxSize = 13, boxGap = 6, boxRadius = 3;
constexpr double groundOpacity = 0.35, pressedOpacity = 0.8;

}  // namespace

PillButton::PillButton(QWidget* parent, const std::string& title, const ThemeSpec& theme,
                       Ground ground)
    : QAbstractButton(parent), ground_(ground), theme_(theme) {
  setFocusPolicy(Qt::TabFocus);
  setText(QString::fromStdString(title));
}

void PillButton::setTheme(const ThemeSpec& theme) {
  theme_ = theme;
  update();
}

QSize PillButton::sizeHint() const {
  const auto font = columnFont(pillPixels, Weight::semibold);
  return {textWidth(text(), font) + 2 * pillHorizontal, lineHeight(pillPixels) + 2 * pillVertical};
}

void PillButton::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setOpacity(isDown() ? pressedOpacity : 1);
  const bool filled = ground_ == Ground::filled;
  if (filled) {
    painter.setPen(Qt::NoPen);
    painter.setBrush(toColor(theme_.fg));
    painter.drawRoundedRect(rect(), pillRadius, pillRadius);
  }
  painter.setFont(columnFont(pillPixels, Weight::semibold));
  painter.setPen(toColor(filled ? theme_.bg : theme_.sub));
  painter.drawText(QPointF(pillHorizontal, pillVertical + baselineOffset(pillPixels)), text());
  paintFocusRing(painter, *this, filled ? theme_.bg : theme_.sub);
}

TickLine::TickLine(QWidget* parent) : QAbstractButton(parent) {
  setFocusPolicy(Qt::TabFocus);
  setCheckable(true);
  setChecked(true);
}

void TickLine::setColors(const ThemeSpec& theme) {
  theme_ = theme;
  update();
}

QSize TickLine::sizeHint() const {
  const auto font = columnFont(tickPixels, Weight::regular);
  return {boxSize + boxGap + textWidth(text(), font), lineHeight(tickPixels) + 2};
}

void TickLine::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  const int top = (height() - boxSize) / 2;
  const QRectF box(0.5, top + 0.5, boxSize - 1, boxSize - 1);
  painter.setPen(toColor(isChecked() ? theme_.fg : theme_.sub));
  painter.setBrush(isChecked() ? QBrush(toColor(theme_.fg)) : QBrush(Qt::NoBrush));
  painter.drawRoundedRect(box, boxRadius, boxRadius);
  if (isChecked()) {
    painter.setPen(QPen(toColor(theme_.bg), 1.5));
    painter.drawPolyline(
        QPolygonF({box.topLeft() + QPointF(2.5, 6), box.topLeft() + QPointF(5, 8.5),
                   box.topLeft() + QPointF(9, 3)}));
  }
  const auto font = columnFont(tickPixels, Weight::regular);
  painter.setFont(font);
  painter.setPen(toColor(theme_.fg));
  const int left = boxSize + boxGap;
  painter.drawText(QPointF(left, 1 + baselineOffset(tickPixels)),
                   elided(text().toStdString(), font, width() - left));
  paintFocusRing(painter, *this, theme_.sub);
}

Card::Card(QWidget* parent, std::function<void(CardAction, bool ticked)> chosen)
    : QWidget(parent), chosen_(std::move(chosen)) {}

void Card::setContent(const std::optional<CardContent>& content, const ThemeSpec& theme,
                      int width) {
  if (content == content_ && theme == theme_ && width == width_) return;
  content_ = content;
  theme_ = theme;
  width_ = width;
  arrange(width);
  setVisible(content_.has_value());
  update();
}

void Card::arrange(int width) {
  lines_.clear();
  // One of them may be telling that it was pressed.
  for (auto* button : buttons_) button->deleteLater();
  for (auto* button : buttons_) button->hide();
  buttons_.clear();
  height_ = 0;
  if (!content_ || content_->choice.empty()) tick_.reset();
  if (!content_) return;
  QStringList spoken;
  for (const auto& line : content_->lines) spoken << QString::fromStdString(line.text);
  setAccessibleName(spoken.join("\n"));
  int y = around + padding;
  for (const auto& line : content_->lines) {
    const auto font = columnFont(line.pixels, line.weight);
    for (const auto& text : wrapped(line.text, font, width - 2 * (around + padding))) {
      lines_.push_back({y, text, &line});
      y += lineHeight(line.pixels);
    }
    y += lineGap;
  }
  height_ = placeButtons(placeTick(y) + buttonGap - lineGap) + padding + around;
}

/// Returns where what follows begins.
int Card::placeTick(int y) {
  if (content_->choice.empty()) return y;
  if (!tick_) {
    tick_ = std::make_unique<TickLine>(this);
    tick_->show();
  }
  tick_->setText(QString::fromStdString(content_->choice));
  tick_->setColors(theme_);
  const int left = around + padding;
  const QSize wanted = tick_->sizeHint();
  tick_->setGeometry(left, y, std::min(wanted.width(), width_ - 2 * left), wanted.height());
  return y + tick_->height() + lineGap;
}

/// Returns their lower edge.
int Card::placeButtons(int y) {
  int x = around + padding;
  int bottom = y;
  for (const auto& button : content_->buttons) {
    auto* pill =
        new PillButton(this, button.title, theme_,
                       button.filled ? PillButton::Ground::filled : PillButton::Ground::none);
    pill->setGeometry(QRect(QPoint(x, y), pill->sizeHint()));
    pill->show();
    connect(pill, &QAbstractButton::clicked, this,
            [this, action = button.action] { chosen_(action, tick_ && tick_->isChecked()); });
    x += pill->width() + buttonGap;
    bottom = y + pill->height();
    buttons_.push_back(pill);
  }
  return bottom;
}

void Card::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(toColor(theme_.line));
  painter.setBrush(toColor(theme_.line, groundOpacity));
  const QRectF ground = rect().marginsRemoved({around, around, around, around});
  painter.drawRoundedRect(ground.adjusted(0.5, 0.5, -0.5, -0.5), radius, radius);
  for (const auto& line : lines_) {
    painter.setFont(columnFont(line.style->pixels, line.style->weight));
    painter.setPen(toColor(line.style->quiet ? theme_.sub : theme_.fg));
    painter.drawText(QPointF(around + padding, line.y + baselineOffset(line.style->pixels)),
                     line.text);
  }
}

}  // namespace zelvane
