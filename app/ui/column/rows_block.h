// The rows with their section bands and dividers, below one another. Main thread.
#pragma once

#include <QtWidgets/QWidget>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "app/ui/column/column_plan.h"
#include "app/ui/column/row_widget.h"

namespace zelvane {

class RowsBlock : public QWidget {
 public:
  struct Callbacks {
    std::function<void(RowWish, const ZelvaneSession&)> wished;
    std::function<void(const ZelvaneSession&, QPoint)> menuWanted;  ///< at a point on the screen
    std::function<void()> grew;                                     ///< or shrank, step by step
  };

  /// The stage must outlive the block.
  RowsBlock(QWidget* parent, Stage& stage, Callbacks callbacks);

  /// Shows the plan at the width. Rows that stay keep their widgets.
  void setPlan(std::vector<ColumnItem> plan, const ThemeSpec& theme, int width);
  int wantedHeight() const { return height_; }
  /// That, or less or more while rows open and close.
  int shownHeight() const { return shownHeight_; }
  void showTimes(Time now);
  /// Where the open editor belongs; nothing without a row for it.
  std::optional<QRect> editorPlace() const;

 protected:
  void paintEvent(QPaintEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  struct Row {
    ZelvaneSession session;
    std::unique_ptr<RowWidget> widget;
  };
  using Rows = std::map<std::string, Row>;

  Row& rowFor(const PlannedRow& planned, Rows& before);
  std::unique_ptr<RowWidget> makeWidget(const std::string& key);
  std::optional<ZelvaneSession> sessionOf(const std::string& key) const;
  void placeItems();
  void paintBand(QPainter& painter, const SectionBand& band, const QRect& place) const;

  Stage& stage_;
  Callbacks callbacks_;
  std::vector<ColumnItem> plan_;
  std::vector<RowWidget*> widgets_;  ///< of the items; null for those that are no rows
  std::vector<QRect> places_;        ///< of the items
  Rows rows_;
  ThemeSpec theme_;
  int width_ = 0;
  int height_ = 0;
  int shownHeight_ = 0;
};

}  // namespace zelvane
