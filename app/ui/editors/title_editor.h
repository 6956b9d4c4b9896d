// Edits the title of a row, in its place. Main thread.
#pragma once

#include <QtWidgets/QLineEdit>
#include <functional>
#include <string>

#include "app/ui/editors/row_editor.h"

namespace zelvane {

class TitleEditor : public RowEditor {
 public:
  /// Exactly one of them is called, once.
  struct Callbacks {
    std::function<void(const std::string&)> commit;  ///< with a changed text
    std::function<void()> cancel;
  };

  /// `placeholder` is shown while the text is empty.
  TitleEditor(QWidget* parent, const std::string& initial, const std::string& placeholder,
              Callbacks callbacks);
  int wantedHeight() const override;

 protected:
  QMenu* fieldMenu() override { return field_.createStandardContextMenu(); }
  void ended(bool keep) override;
  void paintEvent(QPaintEvent*) override;
  void resizeEvent(QResizeEvent*) override;

 private:
  const std::string initial_;
  Callbacks callbacks_;
  QLineEdit field_;
};

}  // namespace zelvane
