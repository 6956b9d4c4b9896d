#include "app/ui/column/row_actions.h"

#include <QtGui/QClipboard>
#include <QtGui/QGuiApplication>
#include <algorithm>

namespace zelvane {
namespace {

constexpr std::chrono::seconds copiedShown(4);
constexpr auto learnedKey = "terminalButtonLearned";

}  // namespace

RowActions::RowActions(std::shared_ptr<ZelvaneStore> store, Clock clock,
                       std::shared_ptr<UserDefaults> defaults, std::function<void()> changed)
    : store_(std::move(store)),
      clock_(std::move(clock)),
      defaults_(std::move(defaults)),
      changed_(std::move(changed)),
      terminalButtonLearned_(defaults_->value(learnedKey) == Json(true)) {
  copiedEnds_.setSingleShot(true);
  copiedEnds_.setInterval(copiedShown);
  QObject::connect(&copiedEnds_, &QTimer::timeout, &copiedEnds_, [this] {
    opened_.copied.reset();
    changed_();
  });
}

void RowActions::carryOut(RowWish wish, const ZelvaneSession& offered) {
  const auto& rows = store_->sessions();
  const auto found = std::find_if(rows.begin(), rows.end(), [&](const auto& row) {
    return row.id == offered.id && row.pid == offered.pid;
  });
  if (found == rows.end()) return;
  const ZelvaneSession session = *found;  // a copy: the rows change under what is done
  switch (wish) {
    case RowWish::tap:
      return tap(session);
    case RowWish::tapTitle:
      if (titleTapEdits(opened_, session, clock_())) startEditing(session, EditorField::title);
      return;
    case RowWish::pressTerminalButton:
      return pressTerminalButton(session);
    case RowWish::open:
      return store_->open(session);
    case RowWish::togglePin:
      return store_->togglePin(session);
    case RowWish::rename:
      return startEditing(session, EditorField::title);
    case RowWish::editMemo:
      return startEditing(session, EditorField::memo);
    case RowWish::acknowledge:
      store_->ack(session.id);
      return store_->refreshNow();
    case RowWish::takeEffort:
      return takeEffort(session);
  }
}

void RowActions::tap(const ZelvaneSession& session) {
  if (alwaysBig(session)) return;
  store_->endEditing(std::nullopt);  // keeps what was typed
  opened_ = afterTap(opened_, session, clock_());
  changed_();
}

void RowActions::startEditing(const ZelvaneSession& session, EditorField field) {
  opened_ = withRoomFor(opened_, session);
  store_->setEditing(editingKey(field, session.id));
}

void RowActions::pressTerminalButton(const ZelvaneSession& session) {
  if (!std::exchange(terminalButtonLearned_, true)) {
    if (!store_->readOnly()) defaults_->set(learnedKey, true);
    changed_();
  }
  store_->open(session);
}

void RowActions::takeEffort(const ZelvaneSession& session) {
  store_->prepareEffort(session, session.suggestedEffort, [](const std::string& text) {
    QGuiApplication::clipboard()->setText(QString::fromStdString(text));
  });
  opened_.copied = session.id;
  copiedEnds_.start();
  changed_();
}

}  // namespace zelvane
