#include "app/ui/column/column_view.h"

#include <QtCore/QPointer>
#include <QtGui/QClipboard>
#include <QtGui/QGuiApplication>
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
#include "app/ui/column/text_style.h"

namespace zelvane {
namespace {

constexpr int problemPixels = 11, problemPadding = 14;
constexpr std::chrono::seconds copiedShown(4);
constexpr auto learnedKey = "terminalButtonLearned";

}  // namespace

ColumnView::ColumnView(std::shared_ptr<ZelvaneStore> store,
                       std::shared_ptr<ConnectionController> connection, const PanelSize& panelSize,
                       Options options, Callbacks callbacks)
    : store_(std::move(store)),
      connection_(std::move(connection)),
      panelSize_(panelSize),
      options_(std::move(options)),
      callbacks_(std::move(callbacks)),
      terminalButtonLearned_(options_.defaults->value(learnedKey) == Json(true)),
      header_(this, callbacks_.menuWanted),
      connectionCard_(this, [this](CardAction action, bool ticked) { chosen(action, ticked); }),
      restoreCard_(this, [this](CardAction action, bool ticked) { chosen(action, ticked); }),
      scroll_(this),
      rows_(new RowsBlock(
          nullptr, *options_.stage,
          {.tapped = [this](const auto& session) { tapped(session); },
           .menuWanted = [this](const auto& session, QPoint p) { showRowMenu(session, p); },
           .openWanted = [this](const auto& session) { openTerminal(session); },
           .titleTapped = [this](const auto& session) { titleTapped(session); },
           .memoWanted = [this](const auto& session) { startEditing(session, EditorField::memo); },
           .effortWanted = [this](const auto& session) { prepareEffort(session); }})),
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
  copiedEnds_.setSingleShot(true);
  copiedEnds_.setInterval(copiedShown);
  connect(&copiedEnds_, &QTimer::timeout, this, [this] {
    opened_.copied.reset();
    refresh();
  });
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
  showCards();
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

void ColumnView::planRows() {
  const auto colors = theme();
  opened_.editing = store_->editing();
  opened_.editorHeight = editor_.wantedHeight();
  rows_->setPlan(columnPlan(store_->sessions(), opened_,
                            {.theme = colors,
                             .now = options_.clock(),
                             .liveClock = options_.liveClock,
                             .still = options_.still,
                             .terminalButtonLearned = terminalButtonLearned_,
                             .family = &Family::all()}),
                 colors, width());
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
  const int rowsHeight = std::max(1, std::min(cap - chrome, rows_->wantedHeight()));
  int y = store_->anchorTop() ? 0 : height() - chrome - rowsHeight;
  header_.setGeometry(0, y, width(), header_.wantedHeight());
  int cardY = y + header_.wantedHeight() + problemHeight();
  for (auto* card : {&connectionCard_, &restoreCard_}) {
    card->setGeometry(0, cardY, width(), card->wantedHeight());
    cardY += card->wantedHeight();
  }
  y += chrome;
  scroll_.setGeometry(0, y, width(), rowsHeight);
  rows_->resize(width(), rows_->wantedHeight());
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
  return header_.wantedHeight() + problemHeight() + connectionCard_.wantedHeight() +
         restoreCard_.wantedHeight();
}

void ColumnView::showCards() {
  connectionCard_.setContent(connectionCard({.state = connection_->state(),
                                             .message = connection_->message(),
                                             .busy = connection_->busy(),
                                             .dismissed = connection_->cardDismissed()}),
                             theme(), width());
  const auto& offers = store_->offers();
  restoreCard_.setContent(restoreCard({.pending = offers.pendingRestore().size(),
                                       .recent = offers.recentClosed().size(),
                                       .restoring = offers.restoring(),
                                       .message = offers.restoreMessage()}),
                          theme(), width());
}

void ColumnView::chosen(CardAction action, bool ticked) {
  switch (action) {
    case CardAction::connect:
      return connection_->connect(/*loginItem=*/ticked);
    case CardAction::connectLater:
      connection_->setCardDismissed(true);
      return connection_->clearMessage();  // what is to be read keeps the card open
    case CardAction::lookAgain:
      return connection_->refresh();
    case CardAction::closeMessage:
      return connection_->clearMessage();
    case CardAction::restoreAll:
      return store_->offers().restoreReboot();
    case CardAction::dismissRestore:
      return store_->offers().dismissRestore();
    case CardAction::reopenRecent:
      return store_->offers().restoreRecent();
    case CardAction::dismissRecent:
      return store_->offers().dismissRecent();
  }
}

void ColumnView::paintEvent(QPaintEvent*) {
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

/// At most one row is open: opening another closes the first.
void ColumnView::tapped(const ZelvaneSession& session) {
  editor_.finish();
  if (opened_.expanded == session.id) {
    opened_.expanded.reset();
  } else {
    opened_.expanded = session.id;
  }
  expandedAt_ = options_.clock();
  refresh();
}

void ColumnView::titleTapped(const ZelvaneSession& session) {
  const bool onlyOpened = !session.pinned && session.state != ZelvaneState::waiting;
  if (titleTapEdits(onlyOpened ? expandedAt_ : std::nullopt, options_.clock())) {
    startEditing(session, EditorField::title);
  }
}

void ColumnView::startEditing(const ZelvaneSession& session, EditorField field) {
  const bool big = session.pinned || session.state == ZelvaneState::waiting;
  if (!big) opened_.expanded = session.id;
  store_->setEditing(editingKey(field, session.id));
}

void ColumnView::prepareEffort(const ZelvaneSession& session) {
  store_->prepareEffort(session, session.suggestedEffort, [](const std::string& text) {
    QGuiApplication::clipboard()->setText(QString::fromStdString(text));
  });
  opened_.copied = session.id;
  copiedEnds_.start();
  refresh();
}

void ColumnView::openTerminal(const ZelvaneSession& session) {
  if (!std::exchange(terminalButtonLearned_, true)) {
    if (!store_->readOnly()) options_.defaults->set(learnedKey, true);
    refresh();
  }
  store_->open(session);
}

void ColumnView::showRowMenu(const ZelvaneSession& session, QPoint point) {
  auto* menu = new QMenu(this);
  menu->setAttribute(Qt::WA_DeleteOnClose);
  styleMenu(*menu, theme());
  for (const auto& [title, command] : rowMenu(session)) {
    connect(menu->addAction(QString::fromStdString(title)), &QAction::triggered, this,
            [this, session, wish = command] { perform(wish, session); });
  }
  menu->popup(point);
}

/// The row may have changed or gone while its menu was open.
void ColumnView::perform(RowCommand command, const ZelvaneSession& offered) {
  const auto& rows = store_->sessions();
  const auto found = std::find_if(rows.begin(), rows.end(), [&](const auto& row) {
    return row.id == offered.id && row.pid == offered.pid;
  });
  if (found == rows.end()) return;
  const ZelvaneSession session = *found;
  switch (command) {
    case RowCommand::open:
      return store_->open(session);
    case RowCommand::togglePin:
      return store_->togglePin(session);
    case RowCommand::rename:
      return startEditing(session, EditorField::title);
    case RowCommand::editMemo:
      return startEditing(session, EditorField::memo);
    case RowCommand::acknowledge:
      store_->ack(session.id);
      return store_->refreshNow();
  }
}

}  // namespace zelvane
