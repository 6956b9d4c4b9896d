#include "app/ui/editors/memo_editor.h"

#include <QtGui/QAbstractTextDocumentLayout>
#include <QtGui/QTextBlockFormat>
#include <algorithm>
#include <cmath>

#include "core/localization.h"

#include "app/ui/column/text_style.h"

namespace zelvane {
namespace {

constexpr int pixels = 12, horizontal = 7, vertical = 5, buttonGap = 2;
constexpr int mostLines = 6;
constexpr double radius = 5;

}  // namespace

MemoEditor::MemoEditor(QWidget* parent, const std::string& initial, Callbacks callbacks)
    : RowEditor(parent),
      initial_(initial),
      callbacks_(std::move(callbacks)),
      field_(this),
      button_(new PillButton(this, L("완료"), theme())) {
  field_.setFrameShape(QFrame::NoFrame);
  field_.setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  field_.setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  field_.viewport()->setAutoFillBackground(false);
  field_.setFont(columnFont(pixels, Weight::regular));
  field_.setAcceptRichText(false);
  field_.setTabChangesFocus(true);
  field_.setPlaceholderText(QString::fromStdString(L("다음에 할 일, 기억할 것…")));
  field_.setAccessibleName(QString::fromStdString(L("메모")));
  begin();
  connect(button_, &QAbstractButton::clicked, this, &MemoEditor::finish);
  follow(&field_);
}

/// Puts the text in, which is no change of it, with lines as high as those of a memo that is shown.
void MemoEditor::begin() {
  auto* document = field_.document();
  document->setDocumentMargin(0);
  document->setUndoRedoEnabled(false);
  field_.setPlainText(QString::fromStdString(initial_));
  QTextBlockFormat format;
  format.setLineHeight(lineHeight(pixels), QTextBlockFormat::FixedHeight);
  QTextCursor all(document);
  all.select(QTextCursor::Document);
  all.mergeBlockFormat(format);
  document->setUndoRedoEnabled(true);
  field_.moveCursor(QTextCursor::End);
  reported_ = field_.toPlainText();
  connect(&field_, &QTextEdit::textChanged, this, &MemoEditor::textChanged);
  // This one tells of lines that are only being composed, too.
  connect(document->documentLayout(), &QAbstractTextDocumentLayout::documentSizeChanged, this,
          &MemoEditor::countLines);
}

void MemoEditor::textChanged() {
  auto text = field_.toPlainText();
  if (text == reported_) return;
  reported_ = std::move(text);
  callbacks_.change(reported_.toStdString());
}

void MemoEditor::countLines() {
  const double height = field_.document()->size().height();
  const auto lines = static_cast<int>(std::lround(height / lineHeight(pixels)));
  const int shown = std::clamp(lines, 1, mostLines);
  if (std::exchange(lines_, shown) != shown) callbacks_.resized();
}

int MemoEditor::groundHeight() const { return lines_ * lineHeight(pixels) + 2 * vertical; }

int MemoEditor::wantedHeight() const {
  return groundHeight() + buttonGap + button_->sizeHint().height();
}

void MemoEditor::ended(bool) { callbacks_.done(initial_); }

/// Between the field and the button: anything further would end the editing.
bool MemoEditor::focusNextPrevChild(bool next) {
  const auto reason = next ? Qt::TabFocusReason : Qt::BacktabFocusReason;
  if (field_.hasFocus()) {
    button_->setFocus(reason);
  } else {
    field_.setFocus(reason);
  }
  return true;
}

void MemoEditor::paintEvent(QPaintEvent*) {
  paintEditorGround(*this, QRect(0, 0, width(), groundHeight()), radius, theme());
}

void MemoEditor::resizeEvent(QResizeEvent*) {
  const QSize pill = button_->sizeHint();
  button_->setGeometry(QRect(QPoint(width() - pill.width(), height() - pill.height()), pill));
  const QRect ground(0, 0, width(), height() - pill.height() - buttonGap);
  field_.setGeometry(ground.adjusted(horizontal, vertical, -horizontal, -vertical));
}

}  // namespace zelvane
