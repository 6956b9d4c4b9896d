// Edits the memo of a row: grows with its text, reports every change at once. Main thread.
#pragma once

#include <QtWidgets/QTextEdit>
#include <functional>
#include <string>

#include "app/ui/card/card.h"
#include "app/ui/editors/row_editor.h"

namespace zelvane {

class MemoEditor : public RowEditor {
 public:
  struct Callbacks {
    std::function<void(const std::string&)> change;  ///< with the text, after each change of it
    std::function<void(const std::string&)> done;    ///< once, with the text from the beginning
    std::function<void()> resized;                   ///< it wants another height
  };

  MemoEditor(QWidget* parent, const std::string& initial, Callbacks callbacks);
  int wantedHeight() const override;

 protected:
  void themeChanged() override { button_->setTheme(theme()); }
  QMenu* fieldMenu() override { return field_.createStandardContextMenu(); }
  void ended(bool keep) override;
  bool hasLines() const override { return true; }
  bool focusNextPrevChild(bool next) override;
  void paintEvent(QPaintEvent*) override;
  void resizeEvent(QResizeEvent*) override;

 private:
  int groundHeight() const;
  void begin();
  void textChanged();
  void countLines();

  const std::string initial_;
  Callbacks callbacks_;
  QTextEdit field_;
  PillButton* button_;  ///< owned by the widget
  QString reported_;    ///< the text as it was last told
  int lines_ = 1;       ///< that are shown
};

}  // namespace zelvane
