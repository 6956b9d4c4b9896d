// The one editor that may be open in the column. It lives outside of the rows, so that a pass may
// move, rename or replace them while something is typed. Main thread.
#pragma once

#include <QtCore/QPointer>
#include <QtCore/QRect>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "app/model/store/store.h"
#include "app/ui/editors/editing_rules.h"
#include "app/ui/editors/row_editor.h"

namespace zelvane {

class OpenEditor {
 public:
  /// `parent` is what the rows lie in; `resized` is called when another height is wanted.
  OpenEditor(std::shared_ptr<ZelvaneStore> store, QWidget* parent, std::function<void()> resized);
  /// What is typed is lost: whoever wants it ends the editing before.
  ~OpenEditor();
  OpenEditor(const OpenEditor&) = delete;
  OpenEditor& operator=(const OpenEditor&) = delete;

  /// Ends the editor that the store's editing key no longer names, makes the one that it names.
  void follow(const ThemeSpec& theme);
  /// 0 while none is open.
  int wantedHeight() const { return editor_ ? editor_->wantedHeight() : 0; }
  /// Moves there; without a place the editing ends. True when it was not there before.
  bool place(const std::optional<QRect>& place);
  /// Ends the editing, keeping what was typed.
  void finish();

 private:
  RowEditor* make(EditorField field, const std::string& id);
  RowEditor* titleEditor(const ZelvaneSession& session);
  RowEditor* memoEditor(const ZelvaneSession& session);

  std::shared_ptr<ZelvaneStore> store_;
  QWidget* parent_;
  std::function<void()> resized_;
  std::optional<std::string> key_;  ///< the store's, when it was last followed
  QPointer<RowEditor> editor_;      ///< owned by the parent
};

}  // namespace zelvane
