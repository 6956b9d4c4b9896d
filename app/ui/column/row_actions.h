// Carries out what the user wants of a row, and remembers what they opened. Main thread.
#pragma once

#include <QtCore/QTimer>
#include <functional>
#include <memory>

#include "app/model/store/store.h"
#include "app/ui/column/row_size.h"
#include "app/ui/column/row_wish.h"
#include "app/ui/editors/editing_rules.h"

namespace zelvane {

class RowActions {
 public:
  /// `changed` is called when something else is to be drawn. Whether the user knows the terminal
  /// buttons is kept in the defaults.
  RowActions(std::shared_ptr<ZelvaneStore> store, Clock clock,
             std::shared_ptr<UserDefaults> defaults, std::function<void()> changed);

  /// Does it to the row as it is by now; nothing to one that has gone meanwhile.
  void carryOut(RowWish wish, const ZelvaneSession& offered);
  /// Without what is being edited, which the store knows.
  const Opened& opened() const { return opened_; }
  bool terminalButtonLearned() const { return terminalButtonLearned_; }

 private:
  void tap(const ZelvaneSession& session);
  void startEditing(const ZelvaneSession& session, EditorField field);
  void pressTerminalButton(const ZelvaneSession& session);
  void takeEffort(const ZelvaneSession& session);

  std::shared_ptr<ZelvaneStore> store_;
  Clock clock_;
  std::shared_ptr<UserDefaults> defaults_;
  std::function<void()> changed_;
  Opened opened_;
  bool terminalButtonLearned_;
  QTimer copiedEnds_;
};

}  // namespace zelvane
