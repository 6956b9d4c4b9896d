#include "app/ui/editors/open_editor.h"

#include <algorithm>

#include "app/ui/editors/memo_editor.h"
#include "app/ui/editors/title_editor.h"

namespace zelvane {
namespace {

const ZelvaneSession* sessionOf(const ZelvaneStore& store, const std::string& id) {
  const auto& rows = store.sessions();
  const auto found =
      std::find_if(rows.begin(), rows.end(), [&](const auto& row) { return row.id == id; });
  return found == rows.end() ? nullptr : &*found;
}

void commitTitle(ZelvaneStore& store, const std::string& id, const std::string& text) {
  const auto* session = sessionOf(store, id);
  store.notes().setTitle(id, committedTitle(text, session ? session->claudeTitle : ""));
  store.showNotes(id);
  store.refreshNow();
  store.endEditing(editingKey(EditorField::title, id));
}

void endMemo(ZelvaneStore& store, const std::string& id, const std::string& original) {
  store.notes().memoEditEnded(id, original);
  store.showNotes(id);
  store.endEditing(editingKey(EditorField::memo, id));
}

}  // namespace

OpenEditor::OpenEditor(std::shared_ptr<ZelvaneStore> store, QWidget* parent,
                       std::function<void()> resized)
    : store_(std::move(store)), parent_(parent), resized_(std::move(resized)) {}

OpenEditor::~OpenEditor() {
  if (editor_) editor_->abandon();
}

void OpenEditor::follow(const ThemeSpec& theme) {
  if (store_->editing() != key_) {
    // The end of the old one comes back here, to find that there is nothing left to do.
    key_ = store_->editing();
    if (const QPointer<RowEditor> old = std::exchange(editor_, nullptr)) {
      old->finish();
      old->hide();
      old->deleteLater();
    }
    const auto named = key_ ? editorNamed(*key_) : std::nullopt;
    if (named) editor_ = make(named->first, named->second);
    // Nobody would type into it, and the panel has the keys as long as it is named.
    if (key_ && !editor_) store_->endEditing(key_);
  }
  if (editor_) editor_->setTheme(theme);
}

RowEditor* OpenEditor::make(EditorField field, const std::string& id) {
  const auto* session = sessionOf(*store_, id);
  if (!session) return nullptr;
  return field == EditorField::title ? titleEditor(*session) : memoEditor(*session);
}

RowEditor* OpenEditor::titleEditor(const ZelvaneSession& session) {
  auto* store = store_.get();
  return new TitleEditor(
      parent_, session.title, session.claudeTitle,
      {.commit = [store, id = session.id](const auto& text) { commitTitle(*store, id, text); },
       .cancel = [store,
                  key = editingKey(EditorField::title, session.id)] { store->endEditing(key); }});
}

RowEditor* OpenEditor::memoEditor(const ZelvaneSession& session) {
  auto* store = store_.get();
  return new MemoEditor(
      parent_, session.memo.value_or(""),
      {.change = [store, id = session.id](const auto& text) { store->notes().setMemo(id, text); },
       .done = [store, id = session.id](const auto& original) { endMemo(*store, id, original); },
       .resized = resized_});
}

bool OpenEditor::place(const std::optional<QRect>& place) {
  if (!editor_) return false;
  if (!place) {
    finish();
    return false;
  }
  const bool moved = editor_->geometry() != *place;
  editor_->setGeometry(*place);
  editor_->raise();  // rows that came later lie over it
  if (!editor_->isHidden()) return moved;
  editor_->show();
  editor_->setFocus();
  return true;
}

void OpenEditor::finish() {
  if (editor_) editor_->finish();
}

}  // namespace zelvane
