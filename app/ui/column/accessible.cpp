#include "app/ui/column/accessible.h"

#include <QtWidgets/QAccessibleWidget>

#include "core/localization.h"

#include "app/ui/card/card.h"
#include "app/ui/column/header.h"
#include "app/ui/column/rows_block.h"

namespace zelvane {
namespace {

/// A row can be pressed, as by a tap; its menu can be opened, and its terminal.
class AccessibleRow : public QAccessibleWidget {
 public:
  explicit AccessibleRow(RowWidget& row)
      : QAccessibleWidget(&row, QAccessible::ListItem),
        row_(row),
        open_(QString::fromStdString(L("이 탭으로 이동"))) {}

  QString text(QAccessible::Text kind) const override {
    const auto& view = row_.view();
    if (kind == QAccessible::Name) return QString::fromStdString(view.accessibleName);
    if (kind == QAccessible::Description) return QString::fromStdString(view.accessibleDescription);
    return QAccessibleWidget::text(kind);
  }

  QAccessible::State state() const override {
    auto state = QAccessibleWidget::state();
    const bool big = row_.view().size == RowSize::big;
    state.expandable = row_.view().tappable;
    state.expanded = big;
    state.collapsed = !big;
    return state;
  }

  QStringList actionNames() const override {
    QStringList names = QAccessibleWidget::actionNames();
    if (row_.view().tappable) names.prepend(pressAction());
    if (row_.view().terminal.enabled) names.append(open_);
    return names << showMenuAction();
  }

  void doAction(const QString& name) override {
    if (name == pressAction()) {
      row_.tap();
    } else if (name == open_) {
      row_.openTerminal();
    } else if (name == showMenuAction()) {
      row_.openMenu();
    } else {
      QAccessibleWidget::doAction(name);
    }
  }

 private:
  RowWidget& row_;
  const QString open_;
};

// The toolkit names classes by its code generator, which the column's do without.
QAccessibleInterface* interfaceFor(const QString&, QObject* object) {
  if (auto* row = dynamic_cast<RowWidget*>(object)) return new AccessibleRow(*row);
  if (auto* rows = dynamic_cast<RowsBlock*>(object)) {
    return new QAccessibleWidget(rows, QAccessible::List);
  }
  auto* widget = dynamic_cast<QWidget*>(object);
  const bool group = dynamic_cast<Card*>(widget) || dynamic_cast<Header*>(widget);
  return group ? new QAccessibleWidget(widget, QAccessible::Grouping) : nullptr;
}

}  // namespace

void makeColumnAccessible() { QAccessible::installFactory(interfaceFor); }

void tellRowChanged(RowWidget& row) {
  if (!QAccessible::isActive()) return;
  for (const auto what : {QAccessible::NameChanged, QAccessible::DescriptionChanged}) {
    QAccessibleEvent event(&row, what);
    QAccessible::updateAccessibility(&event);
  }
}

}  // namespace zelvane
