#include "app/ui/editors/row_editor.h"

#include <QtGui/QInputMethod>
#include <QtGui/QInputMethodEvent>
#include <QtGui/QKeyEvent>
#include <QtGui/QPainter>
#include <QtWidgets/QApplication>

#include "app/ui/column/text_style.h"

namespace zelvane {
namespace {

/// The colours of a field that lies on an editor's ground.
QPalette editorPalette(const ThemeSpec& theme) {
  constexpr double selection = 0.35;
  QPalette palette;
  palette.setColor(QPalette::Base, Qt::transparent);
  palette.setColor(QPalette::Text, toColor(theme.fg));
  palette.setColor(QPalette::PlaceholderText, toColor(theme.sub));
  palette.setColor(QPalette::Highlight, toColor(theme.sub, selection));
  palette.setColor(QPalette::HighlightedText, toColor(theme.fg));
  return palette;
}

}  // namespace

void RowEditor::follow(QWidget* field) {
  field_ = field;
  setFocusProxy(field);
  field->installEventFilter(this);
  field->setContextMenuPolicy(Qt::CustomContextMenu);
  connect(field, &QWidget::customContextMenuRequested, this, &RowEditor::showFieldMenu);
  // A menu of the field's own does not count as a loss of the focus, and neither does our button.
  connect(qApp, &QApplication::focusChanged, this, [this](QWidget* old, QWidget* now) {
    // Without the keys the window lost them, or has not got them yet: the panel knows which.
    const bool hasKeys = QApplication::activeWindow() != nullptr;
    if (hasKeys && isAncestorOf(old) && !isAncestorOf(now)) finish();
  });
}

void RowEditor::setTheme(const ThemeSpec& theme) {
  if (theme == theme_) return;
  theme_ = theme;
  field_->setPalette(editorPalette(theme));
  themeChanged();
  update();
}

void RowEditor::showFieldMenu(const QPoint& point) {
  auto* menu = fieldMenu();
  menu->setAttribute(Qt::WA_DeleteOnClose);
  styleMenu(*menu, theme_);
  menu->popup(field_->mapToGlobal(point));
}

void RowEditor::end(bool keep) {
  if (ended_) return;
  ended_ = true;
  settleComposition();
  ended(keep);
}

/// Some input methods, or none at all, leave what is composed to whoever asks last.
void RowEditor::settleComposition() {
  if (composing_.isEmpty()) return;
  QGuiApplication::inputMethod()->commit();
  if (composing_.isEmpty()) return;
  QInputMethodEvent event;
  event.setCommitString(composing_);
  QCoreApplication::sendEvent(field_, &event);
}

bool RowEditor::eventFilter(QObject* watched, QEvent* event) {
  switch (event->type()) {
    case QEvent::InputMethod:
      composing_ = static_cast<QInputMethodEvent*>(event)->preeditString();
      break;
    case QEvent::FocusAboutToChange:
      settleComposition();
      break;
    case QEvent::KeyPress:
      return keyPressed(*static_cast<QKeyEvent*>(event));
    default:
      break;
  }
  return QWidget::eventFilter(watched, event);
}

/// Whether the key is dealt with.
bool RowEditor::keyPressed(const QKeyEvent& event) {
  const bool isReturn = event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter;
  const bool isEscape = event.key() == Qt::Key_Escape;
  if (!isReturn && !isEscape) return false;
  if (isReturn && hasLines() && event.modifiers().testFlag(Qt::ShiftModifier)) return false;
  if (composing_.isEmpty()) {
    end(/*keep=*/isReturn);
  } else if (isReturn) {
    settleComposition();  // the key was meant for the syllable
  } else {
    QInputMethodEvent nothing;
    QGuiApplication::inputMethod()->reset();
    QCoreApplication::sendEvent(field_, &nothing);
  }
  return true;
}

void paintEditorGround(QWidget& editor, const QRect& ground, double radius,
                       const ThemeSpec& theme) {
  constexpr double opacity = 0.6;
  QPainter painter(&editor);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  painter.setBrush(toColor(theme.line, opacity));
  painter.drawRoundedRect(ground, radius, radius);
}

}  // namespace zelvane
