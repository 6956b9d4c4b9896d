#include "app/ui/column/text_style.h"

#include <QtGui/QFontMetricsF>
#include <QtGui/QTextLayout>
#include <QtGui/QTextOption>
#include <cmath>

namespace zelvane {
namespace {

/// Nothing longer can be seen on a line, and measuring it would cost.
constexpr qsizetype longestLine = 400;

QFont::Weight toWeight(Weight weight) {
  switch (weight) {
    case Weight::regular:
      return QFont::Normal;
    case Weight::medium:
      return QFont::Medium;
    case Weight::semibold:
      return QFont::DemiBold;
    case Weight::bold:
      break;
  }
  return QFont::Bold;
}

/// The text, ended by "…" when it is longer than `longest`.
QString limited(QString text, qsizetype longest) {
  if (text.size() <= longest) return text;
  const bool halvesAPair = text.at(longest - 1).isHighSurrogate();
  return text.left(halvesAPair ? longest - 1 : longest) + QChar(0x2026);
}

}  // namespace

QFont columnFont(int pixels, Weight weight) {
  QFont font;
  font.setFamilies({"Noto Sans CJK KR", "Noto Sans KR", "NanumGothic", "sans-serif"});
  font.setPixelSize(pixels);
  font.setWeight(toWeight(weight));
  return font;
}

int lineHeight(int pixels) { return static_cast<int>(std::lround(pixels * 1.35)); }

int baselineOffset(int pixels) {
  // A Hangul syllable fills its em square, 0.88 of it above the baseline: that is what is centred.
  return static_cast<int>(std::lround((lineHeight(pixels) - pixels) / 2.0 + 0.88 * pixels));
}

QColor toColor(Rgb color, double opacity) {
  const auto alpha = static_cast<int>(std::lround(color.alpha * opacity));
  return {color.red, color.green, color.blue, alpha};
}

QString elided(const std::string& text, const QFont& font, int width) {
  const auto line = limited(QString::fromStdString(text), longestLine);
  return QFontMetricsF(font).elidedText(line, Qt::ElideRight, width);
}

QStringList wrapped(const std::string& text, const QFont& font, int width) {
  constexpr qsizetype longestText = 2000;
  QStringList lines;
  for (const auto& paragraph : limited(QString::fromStdString(text), longestText).split(u'\n')) {
    QTextLayout layout(paragraph, font);
    QTextOption option;
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    layout.setTextOption(option);
    layout.beginLayout();
    for (auto line = layout.createLine(); line.isValid(); line = layout.createLine()) {
      line.setLineWidth(width);
      lines += paragraph.mid(line.textStart(), line.textLength()).trimmed();
    }
    layout.endLayout();
  }
  return lines;
}

int textWidth(const QString& text, const QFont& font) {
  return static_cast<int>(std::ceil(QFontMetricsF(font).horizontalAdvance(text)));
}

void styleMenu(QMenu& menu, const ThemeSpec& theme) {
  QPalette palette;
  const QColor ground = toColor(theme.bg), text = toColor(theme.fg);
  // Light: the style draws disabled items once more in it, like an engraving.
  for (const auto role : {QPalette::Window, QPalette::Base, QPalette::Button, QPalette::Light}) {
    palette.setColor(role, ground);
  }
  for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
    palette.setColor(role, text);
    palette.setColor(QPalette::Disabled, role, toColor(theme.sub));
  }
  palette.setColor(QPalette::Highlight, toColor(theme.line));
  palette.setColor(QPalette::HighlightedText, text);
  menu.setPalette(palette);
  // It mostly lies on the column, which has its ground's colour.
  constexpr double borderOpacity = 0.45;
  menu.setStyleSheet(
      QStringLiteral("QMenu { background: %1; border: 1px solid %3; }"
                     "QMenu::separator { height: 1px; margin: 4px 8px; background: %2; }")
          .arg(ground.name(), toColor(theme.line).name(),
               toColor(theme.sub, borderOpacity).name(QColor::HexArgb)));
  constexpr int menuPixels = 13;
  menu.setFont(columnFont(menuPixels, Weight::regular));
}

}  // namespace zelvane
