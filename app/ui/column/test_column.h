// The column off screen, for tests: in its panel, with rows that no session stands behind.
#pragma once

#include <QtGui/QWindow>
#include <QtTest/QTest>
#include <atomic>
#include <gtest/gtest.h>
#include <mutex>

#include "app/ui/column/column_view.h"
#include "app/ui/motion/test_stage.h"
#include "app/ui/panel/column_panel.h"

namespace zelvane {

inline constexpr Time now = timeAt(1'000'000'000);

inline std::shared_ptr<ZelvaneStore> storeWith(
    std::vector<ZelvaneSession> rows,
    std::function<void(const std::string& tty, std::int32_t pid)> jump = {}) {
  ZelvaneStore::Options options;
  options.defaults = std::make_shared<MemoryDefaults>();
  options.mainThread = [](std::function<void()>) {};
  options.clock = [] { return now; };
  options.jump = std::move(jump);
  auto store = ZelvaneStore::create(std::move(options));
  store->showSamples(std::move(rows));
  return store;
}

/// A connection of values; what it does in the background is done at once.
struct Connection {
  std::atomic<Installer::State> state = Installer::State::connected;
  std::shared_ptr<ConnectionController> controller = ConnectionController::create(
      {.install =
           [this] {
             state = Installer::State::connected;
             return Outcome::ok("연결했어요.");
           },
       .uninstall =
           [this] {
             state = Installer::State::notConnected;
             return Outcome::ok("연결을 해제했어요.");
           },
       .state = [this] { return state.load(); },
       .confirmDisconnect = [] { return true; },
       .turnOnLoginItem = [] {},
       .defaults = std::make_shared<MemoryDefaults>(),
       .mainThread =
           [](std::function<void()> task) {
             QMetaObject::invokeMethod(qApp, std::move(task), Qt::QueuedConnection);
           }});
};

/// The column in its panel, off screen.
struct Column {
  explicit Column(std::vector<ZelvaneSession> rows)
      : store(storeWith(std::move(rows), [this](const std::string& tty, std::int32_t) {
          const std::lock_guard guard(lock);
          jumps.push_back(tty);
        })) {
    view = new ColumnView(store, connection.controller, size,
                          {.clock = [this] { return time; }, .maxHeight = 700, .stage = stage},
                          {.onHeight = [this](int height) { panel.setContentHeight(height); },
                           .menuWanted = [this](QPoint) { ++menus; }});
    store->observe([this](ZelvaneStore::Change change) {
      if (change != ZelvaneStore::Change::editing) return;
      panel.setTakesKeys(store->editing().has_value());
    });
    panel.setContent(view);
    panel.appear();
    panel.setContentHeight(view->contentHeight());
    EXPECT_TRUE(QTest::qWaitForWindowExposed(&panel));
    QCoreApplication::processEvents();  // the rows that the first frame had no room for
  }

  std::vector<RowWidget*> rows() const {
    std::vector<RowWidget*> found;
    for (auto* row : panel.findChildren<QWidget*>()) {
      auto* typed = dynamic_cast<RowWidget*>(row);
      if (typed && !typed->isHidden()) found.push_back(typed);
    }
    std::sort(found.begin(), found.end(),
              [](auto* one, auto* other) { return one->y() < other->y(); });
    return found;
  }
  std::string sizes() const {
    std::string text;
    for (const auto* row : rows()) text += row->view().size == RowSize::big ? "B" : "s";
    return text;
  }
  /// Until no row opens or closes any more.
  void settle() const {
    EXPECT_TRUE(QTest::qWaitFor([this] {
      const auto all = rows();
      return std::all_of(all.begin(), all.end(),
                         [](auto* row) { return row->height() == row->wantedHeight(); });
    }));
  }
  void click(const QWidget* widget, QPoint at) const {
    QTest::mouseClick(panel.windowHandle(), Qt::LeftButton, {}, widget->mapTo(&panel, at));
  }
  /// Where no row has anything but itself.
  void click(std::size_t row) const {
    settle();
    click(rows().at(row), {8, rows().at(row)->height() - 4});
  }
  void clickTitle(std::size_t row) const {
    settle();
    auto* widget = rows().at(row);
    click(widget, rowLayout(widget->view(), widget->width()).title.center());
  }
  void press(const QString& title) const {
    settle();
    for (auto* button : panel.findChildren<QAbstractButton*>()) {
      if (button->text() == title && button->isVisible()) {
        return click(button, button->rect().center());
      }
    }
    ADD_FAILURE() << "no button " << title.toStdString();
  }
  /// The field of the open editor, once it has the keys; null when none is open.
  QWidget* editor() {
    if (!store->editing()) return nullptr;
    EXPECT_TRUE(QTest::qWaitFor([] { return QApplication::focusWidget() != nullptr; }));
    return QApplication::focusWidget();
  }

  std::vector<PillButton*> buttons() const {
    std::vector<PillButton*> found;
    for (auto* child : panel.findChildren<QWidget*>()) {
      auto* button = dynamic_cast<PillButton*>(child);
      if (button && button->isVisible()) found.push_back(button);
    }
    return found;
  }

  std::vector<std::string> jumpsSoFar() {
    const std::lock_guard guard(lock);
    return jumps;
  }

  std::mutex lock;
  std::vector<std::string> jumps;
  std::shared_ptr<TestStage> stage = std::make_shared<TestStage>();
  std::shared_ptr<ZelvaneStore> store;
  Connection connection;
  PanelSize size{std::make_shared<MemoryDefaults>(), PanelSize::Mode::readOnly};
  Time time = now;
  int menus = 0;
  ColumnPanel panel{size, {.onKeysLost = [this] { store->endEditing(std::nullopt); }}};
  ColumnView* view = nullptr;
};

}  // namespace zelvane
