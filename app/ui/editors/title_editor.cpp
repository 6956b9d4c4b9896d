#include "app/ui/editors/title_editor.h"

#include "core/localization.h"

#include "app/ui/column/text_style.h"
#include "app/ui/editors/editing_rules.h"

namespace zelvane {
namespace {

constexpr int pixels = 15, horizontal = 4, vertical = 1;
constexpr double radius = 4;

}  // namespace

TitleEditor::TitleEditor(QWidget* parent, const std::string& initial,
                         const std::string& placeholder, Callbacks callbacks)
    : RowEditor(parent), initial_(initial), callbacks_(std::move(callbacks)), field_(this) {
  constexpr int ownMargin = 2;  // a line edit keeps this much free at both ends
  field_.setFrame(false);
  field_.setTextMargins(horizontal - ownMargin, 0, horizontal - ownMargin, 0);
  field_.setFont(columnFont(pixels, Weight::bold));
  field_.setPlaceholderText(QString::fromStdString(placeholder));
  field_.setText(QString::fromStdString(initial));
  field_.selectAll();
  field_.setAccessibleName(QString::fromStdString(L("이름 바꾸기")));
  follow(&field_);
}

int TitleEditor::wantedHeight() const { return lineHeight(pixels) + 2 * vertical; }

void TitleEditor::ended(bool keep) {
  const auto text = field_.text().toStdString();
  if (keep && titleChanged(initial_, text)) {
    callbacks_.commit(text);
  } else {
    callbacks_.cancel();
  }
}

void TitleEditor::paintEvent(QPaintEvent*) { paintEditorGround(*this, rect(), radius, theme()); }

void TitleEditor::resizeEvent(QResizeEvent*) { field_.setGeometry(rect()); }

}  // namespace zelvane
