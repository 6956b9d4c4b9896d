// The whole content of the panel: header, messages, rows. Draws what the store publishes and hands
// every wish of the user on. Main thread.
#pragma once

#include <QtWidgets/QScrollArea>
#include <QtWidgets/QWidget>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "app/connect/connection_controller.h"
#include "app/model/store/store.h"
#include "app/ui/card/cards.h"
#include "app/ui/column/header.h"
#include "app/ui/column/row_actions.h"
#include "app/ui/column/rows_block.h"
#include "app/ui/column/second_ticker.h"
#include "app/ui/editors/open_editor.h"
#include "app/ui/panel/panel_size.h"

namespace zelvane {

class ColumnView : public QWidget {
 public:
  struct Options {
    Clock clock = systemTime;
    int maxHeight = 0;      ///< of the whole column on the present screen
    bool dark = false;      ///< the system's appearance
    bool liveClock = true;  ///< working times run by the second
    bool still = false;     ///< characters and tiles do not move
    std::shared_ptr<Stage> stage = liveStage();
    /// Whether the user knows the terminal buttons is kept here.
    std::shared_ptr<UserDefaults> defaults = std::make_shared<MemoryDefaults>();
  };
  struct Callbacks {
    std::function<void(int)> onHeight;       ///< the content's height changed
    std::function<void(QPoint)> menuWanted;  ///< at a point on the screen
  };

  ColumnView(std::shared_ptr<ZelvaneStore> store, std::shared_ptr<ConnectionController> connection,
             const PanelSize& panelSize, Options options, Callbacks callbacks);

  /// As the options of the same names.
  void setAppearance(bool dark, bool still);
  void setMaxHeight(int maxHeight);
  /// The height that the whole content wants.
  int contentHeight() const { return contentHeight_; }
  ThemeSpec theme() const;
  /// Draws what is published now.
  void refresh();
  /// Paints what can be seen into pictures that nobody looks at: the frame that follows finds fonts
  /// and glyphs loaded.
  void paintAhead();

 protected:
  void paintEvent(QPaintEvent*) override;
  void resizeEvent(QResizeEvent*) override;
  void keyPressEvent(QKeyEvent* event) override;
  bool focusNextPrevChild(bool next) override;

 private:
  /// What it paints itself.
  struct Ground {
    ThemeSpec theme;
    QStringList problem;
    int top = 0;
    bool operator==(const Ground&) const = default;
  };

  void storeChanged(ZelvaneStore::Change change);
  void showRowMenu(const ZelvaneSession& session, QPoint point);
  void planRows();
  void placeEditor();
  void place();
  void reportHeight();
  int problemHeight() const;
  int chromeHeight() const;
  QStringList problemLines() const;

  std::shared_ptr<ZelvaneStore> store_;
  std::shared_ptr<ConnectionController> connection_;
  const PanelSize& panelSize_;
  Options options_;
  Callbacks callbacks_;
  RowActions actions_;
  int contentHeight_ = 0;
  bool painted_ = false;         ///< at least once
  bool rowsAreMissing_ = false;  ///< those that the first frame had no room for
  std::optional<Ground> ground_;

  Header header_;
  Cards cards_;
  QScrollArea scroll_;
  RowsBlock* rows_;  ///< owned by the scroll area
  OpenEditor editor_;
  SecondTicker ticker_;
};

}  // namespace zelvane
