// The cards above the rows: what is shown of the connection and of the tabs to reopen, and what
// their buttons do. Main thread.
#pragma once

#include <memory>

#include "app/connect/connection_controller.h"
#include "app/model/store/store.h"
#include "app/ui/card/card.h"

namespace zelvane {

class Cards {
 public:
  Cards(QWidget* parent, std::shared_ptr<ZelvaneStore> store,
        std::shared_ptr<ConnectionController> connection);

  /// Shows what is published now, at the width.
  void refresh(const ThemeSpec& theme, int width);
  /// Puts them below one another.
  void place(int y);
  int wantedHeight() const { return connectionCard_.wantedHeight() + restoreCard_.wantedHeight(); }

 private:
  void chosen(CardAction action, bool ticked);

  std::shared_ptr<ZelvaneStore> store_;
  std::shared_ptr<ConnectionController> connection_;
  int width_ = 0;
  Card connectionCard_;
  Card restoreCard_;
};

}  // namespace zelvane
