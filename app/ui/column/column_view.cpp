#include "app/ui/column/column_view.h"

#include <QtCore/QPointer>
#include <QtGui/QPainter>
#include <QtGui/QPainterPath>
#include <QtGui/QRegion>
#include <QtGui/QResizeEvent>
#include <QtWidgets/QMenu>
#include <algorithm>

#include "core/localization.h"

#include "app/ui/column/accessible.h"
#include "app/ui/column/column_shape.h"
#include "app/ui/column/focus.h"
#include "app/ui/column/row_menu.h"
#include "app/ui/column/text_style.h"

namespace zelvane {
namespace {

constexpr int problemPixels = 11, problemPadding = 14;
constexpr int leastRowHeight = 45;  // with its divider or band

}  // namespace

ColumnView::ColumnView(std::shared_ptr<ZelvaneStore> store,
                       std::shared_ptr<ConnectionController> connection, const PanelSize& panelSize,
                       Options options, Callbacks callbacks)
    : store_(std::move(store)),
      connection_(std::move(connection)),
      panelSize_(panelSize),
      options_(std::move(options)),
      callbacks_(std::move(callbacks)),
      actions_(store_, options_.clock, options_.defaults, [this] { refresh(); }),
      header_(this, callbacks_.menuWanted),
      cards_(this, store_, connection_),
      scroll_(this),
      rows_(new RowsBlock(
          nullptr, *options_.stage,
          {.wished = [this](RowWish wish, const auto& row) { actions_.carryOut(wish, row); },
           .menuWanted = [this](const auto& row, QPoint point) { showRowMenu(row, point); },
           .grew =
               [this] {
                 place();
                 placeEditor();
               }})),
      editor_(store_, rows_, [this] { refresh(); }),
      ticker_([this] { rows_->showTimes(options_.clock()); }) {
  makeColumnAccessible();
  rows_->setAccessibleName(QString::fromStdString(L("탭")));
  scroll_.setFrameShape(QFrame::NoFrame);
  scroll_.setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  scroll_.setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  scroll_.setFocusPolicy(Qt::NoFocus);
  scroll_.setWidget(rows_);
  // Both fill themselves by default, and would hide the rounded ground.
  scroll_.viewport()->setAutoFillBackground(false);
  rows_->setAutoFillBackground(false);
  store_->observe([view = QPointer<ColumnView>(this)](ZelvaneStore::Change change) {
    if (view) view->storeChanged(change);
  });
  connection_->observe([view = QPointer<ColumnView>(this)] {
    if (view) view->refresh();
  });
  refresh();
}

ThemeSpec ColumnView::theme() const { return ThemeSpec::of(store_->theme(), options_.dark); }

void ColumnView::setAppearance(bool dark, bool still) {
  options_.dark = dark;
  options_.still = still;
  refresh();
}

void ColumnView::setMaxHeight(int maxHeight) {
  options_.maxHeight = maxHeight;
  refresh();
}

void ColumnView::storeChanged(ZelvaneStore::Change change) {
  using Change = ZelvaneStore::Change;
  switch (change) {
    case Change::sessions:
    case Change::editing:
    case Change::notesProblem:
    case Change::pendingRestore:
    case Change::recentClosed:
    case Change::restoring:
    case Change::restoreMessage:
    case Change::theme:
    case Change::anchorTop:
    case Change::passed:  // elapsed times move on
      refresh();
      break;
    case Change::visible:
      ticker_.setRunning(options_.liveClock && store_->clockNeeded());
      options_.stage->driver.setRunning(store_->visible());
      if (store_->visible()) refresh();
      break;
    default:
      break;
  }
}

void ColumnView::refresh() {
  const auto colors = theme();
  editor_.follow(colors);
  header_.setTexts(headerTexts(store_->sessions()), colors);
  cards_.refresh(colors, width());
  planRows();
  setAccessibleDescription(QString::fromStdString(store_->notesProblem().value_or("")));
  ticker_.setRunning(options_.liveClock && store_->clockNeeded());
  place();
  placeEditor();
  // A pass that brings nothing new paints nothing.
  const Ground ground{colors, problemLines(), header_.y()};
  if (std::exchange(ground_, ground) != ground) update();
  reportHeight();
}

void ColumnView::paintAhead() {
  for (auto* child : findChildren<QWidget*>(Qt::FindDirectChildrenOnly)) {
    const QRect seen = child->visibleRegion().boundingRect();
    if (!seen.isEmpty()) child->grab(seen);
  }
}

void ColumnView::planRows() {
  const auto colors = theme();
  Opened opened = actions_.opened();
  opened.editing = store_->editing();
  opened.editorHeight = editor_.wantedHeight();
  // The first frame does not wait for rows that it has no room for.
  const auto& sessions = store_->sessions();
  const int room = isVisible() ? height() : options_.maxHeight;
  const auto atFirst = static_cast<std::size_t>(room / leastRowHeight + 1);
  rowsAreMissing_ = !painted_ && sessions.size() > atFirst;
  auto plan = columnPlan(sessions, opened,
                         {.theme = colors,
                          .now = options_.clock(),
                          .liveClock = options_.liveClock,
                          .still = options_.still,
                          .terminalButtonLearned = actions_.terminalButtonLearned(),
                          .family = &Family::all()},
                         rowsAreMissing_ ? atFirst : sessions.size());
  rows_->setPlan(std::move(plan), colors, width());
}

void ColumnView::placeEditor() {
  const auto place = rows_->editorPlace();
  if (!editor_.place(place)) return;
  constexpr int around = 8;
  scroll_.ensureVisible(place->center().x(), place->center().y(), 0, place->height() / 2 + around);
}

/// The content keeps to the edge that the column is anchored to while the panel changes its height.
void ColumnView::place() {
  const int chrome = chromeHeight();
  const int cap = heightLimit(panelSize_.chosen(), options_.maxHeight);
  const int rowsHeight = std::max(1, std::min(cap - chrome, rows_->shownHeight()));
  int y = store_->anchorTop() ? 0 : height() - chrome - rowsHeight;
  header_.setGeometry(0, y, width(), header_.wantedHeight());
  cards_.place(y + header_.wantedHeight() + problemHeight());
  y += chrome;
  scroll_.setGeometry(0, y, width(), rowsHeight);
  rows_->resize(width(), rows_->shownHeight());
  // Bands may be scrolled to the very bottom, where the column is round.
  scroll_.setMask(roundedAtBottom(scroll_.rect()));
}

void ColumnView::reportHeight() {
  const int wanted = chromeHeight() + rows_->wantedHeight();
  if (std::exchange(contentHeight_, wanted) != wanted) callbacks_.onHeight(wanted);
}

void ColumnView::resizeEvent(QResizeEvent* event) {
  if (event->size().width() != event->oldSize().width()) {
    refresh();
  } else {
    place();
  }
}

bool ColumnView::focusNextPrevChild(bool next) { return moveFocus(*this, next); }

/// The toolkit presses buttons by the space bar only.
void ColumnView::keyPressEvent(QKeyEvent* event) {
  auto* button = qobject_cast<QAbstractButton*>(window()->focusWidget());
  const bool enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
  if (!button || !enter) return event->ignore();
  button->click();
}

QStringList ColumnView::problemLines() const {
  if (!store_->notesProblem()) return {};
  return wrapped(*store_->notesProblem(), columnFont(problemPixels, Weight::semibold),
                 width() - 2 * problemPadding);
}

int ColumnView::problemHeight() const {
  const auto lines = static_cast<int>(problemLines().size());
  return lines == 0 ? 0 : problemPadding + lines * lineHeight(problemPixels);
}

/// Everything above the rows.
int ColumnView::chromeHeight() const {
  return header_.wantedHeight() + problemHeight() + cards_.wantedHeight();
}

void ColumnView::paintEvent(QPaintEvent*) {
  painted_ = true;
  if (std::exchange(rowsAreMissing_, false)) QTimer::singleShot(0, this, &ColumnView::refresh);
  QPainter painter(this);
  const auto colors = theme();
  paintColumnGround(painter, rect(), colors);
  painter.setPen(toColor(colors.wait));
  painter.setFont(columnFont(problemPixels, Weight::semibold));
  int y = header_.geometry().bottom() + 1 + problemPadding;
  for (const auto& line : problemLines()) {
    painter.drawText(QPointF(problemPadding, y + baselineOffset(problemPixels)), line);
    y += lineHeight(problemPixels);
  }
}

void ColumnView::showRowMenu(const ZelvaneSession& session, QPoint point) {
  auto* menu = new QMenu(this);
  menu->setAttribute(Qt::WA_DeleteOnClose);
  styleMenu(*menu, theme());
  for (const auto& [title, wish] : rowMenu(session)) {
    connect(menu->addAction(QString::fromStdString(title)), &QAction::triggered, this,
            [this, session, chosen = wish] { actions_.carryOut(chosen, session); });
  }
  menu->popup(point);
}

}  // namespace zelvane
