#include "app/ui/column/header.h"

#include <QtGui/QCursor>
#include <QtGui/QPainter>

#include "core/localization.h"

#include "app/ui/column/focus.h"
#include "app/ui/column/text_style.h"

namespace zelvane {
namespace {

constexpr int horizontal = 14, vertical = 10;
constexpr int tallestPixels = 13;  // of the texts; all lines share its baseline
constexpr int spacing = 8;
constexpr int buttonPixels = 14, buttonWidth = 22;

}  // namespace

MenuButton::MenuButton(QWidget* parent) : QAbstractButton(parent) {
  setFocusPolicy(Qt::TabFocus);
  setAccessibleName(QString::fromStdString(L("메뉴")));
}

void MenuButton::setColor(Rgb color) {
  color_ = color;
  update();
}

QSize MenuButton::sizeHint() const { return {buttonWidth, lineHeight(tallestPixels) + vertical}; }

void MenuButton::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  const auto font = columnFont(buttonPixels, Weight::bold);
  const QString dots(QChar(0x22EF));
  painter.setFont(font);
  painter.setPen(toColor(color_));
  const int left = (width() - textWidth(dots, font)) / 2;
  const int top = (height() - lineHeight(buttonPixels)) / 2;
  painter.drawText(QPointF(left, top + baselineOffset(buttonPixels)), dots);
  paintFocusRing(painter, *this, color_);
}

Header::Header(QWidget* parent, std::function<void(QPoint)> menuWanted)
    : QWidget(parent), menuButton_(this) {
  connect(&menuButton_, &QAbstractButton::clicked, this, [this, wanted = std::move(menuWanted)] {
    // Pressed by a key, it is not where the pointer happens to be.
    wanted(menuButton_.hasFocus() ? menuButton_.mapToGlobal(menuButton_.rect().center())
                                  : QCursor::pos());
  });
}

void Header::setTexts(const HeaderTexts& texts, const ThemeSpec& theme) {
  if (texts == texts_ && theme == theme_) return;
  texts_ = texts;
  theme_ = theme;
  menuButton_.setColor(theme.sub);
  QStringList spoken;
  for (const auto& text : {texts.name, texts.tabs, texts.waiting, texts.done}) {
    if (!text.empty()) spoken << QString::fromStdString(text);
  }
  setAccessibleName(spoken.join(", "));
  update();
}

int Header::wantedHeight() const { return lineHeight(tallestPixels) + 2 * vertical; }

std::vector<Header::Part> Header::parts(HeaderForm form) const {
  const bool compact = form == HeaderForm::compact;
  std::vector<Part> parts;
  const auto add = [&](const std::string& text, Rgb color, Weight weight, int pixels) {
    if (!text.empty()) parts.push_back({{text, color, weight}, pixels});
  };
  if (!compact) {
    const bool mono = theme_.monoHeader;
    add(texts_.name, theme_.fg, mono ? Weight::bold : Weight::semibold, mono ? 12 : 13);
  }
  if (form == HeaderForm::full) add(texts_.tabs, theme_.sub, Weight::regular, 11);
  add(texts_.waiting, theme_.wait, Weight::semibold, 12);
  if (!compact) add(texts_.done, theme_.done, Weight::regular, 12);
  return parts;
}

int Header::widthOf(const std::vector<Part>& parts) const {
  int width = 0;
  for (const auto& [text, pixels] : parts) {
    width +=
        spacing + textWidth(QString::fromStdString(text.text), columnFont(pixels, text.weight));
  }
  return width;
}

HeaderForm Header::fittingForm() const {
  return headerForm(width() - 2 * horizontal - buttonWidth, widthOf(parts(HeaderForm::full)),
                    widthOf(parts(HeaderForm::withoutTabs)));
}

std::vector<std::string> Header::shownTexts() const {
  std::vector<std::string> shown;
  for (const auto& part : parts(fittingForm())) shown.push_back(part.text.text);
  return shown;
}

void Header::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  int x = horizontal;
  const int baseline = vertical + baselineOffset(tallestPixels);
  for (const auto& [text, pixels] : parts(fittingForm())) {
    const auto font = columnFont(pixels, text.weight);
    const auto line = QString::fromStdString(text.text);
    painter.setFont(font);
    painter.setPen(toColor(text.color));
    painter.drawText(QPointF(x, baseline), line);
    x += textWidth(line, font) + spacing;
  }
}

void Header::resizeEvent(QResizeEvent*) {
  const QSize size = menuButton_.sizeHint();
  // The dots end where the rows' texts do; the button reaches beyond them.
  menuButton_.setGeometry(width() - horizontal - size.width() + 4, (height() - size.height()) / 2,
                          size.width(), size.height());
}

}  // namespace zelvane
