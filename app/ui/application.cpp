#include "app/ui/application.h"

#include <QtWidgets/QApplication>
#include <QtWidgets/QMenu>
#include <algorithm>
#include <atomic>
#include <csignal>
#include <thread>

#include "core/bundle.h"
#include "core/installer/installer.h"
#include "core/run_loop.h"
#include "core/standard_defaults.h"

#include "app/login/login_item.h"
#include "app/model/family/family.h"
#include "app/model/refresh/offers.h"
#include "app/model/store/samples.h"
#include "app/ui/column/text_style.h"
#include "app/ui/questions.h"
#include "app/ui/render.h"

namespace zelvane {
namespace {

constexpr int pictureMaxHeight = 900;

std::int64_t friendCount() { return static_cast<std::int64_t>(Family::all().size()); }

Executor mainThread() {
  return [](std::function<void()> task) {
    QMetaObject::invokeMethod(qApp, std::move(task), Qt::QueuedConnection);
  };
}

std::shared_ptr<ZelvaneStore> makeStore(std::shared_ptr<UserDefaults> defaults, bool readOnly) {
  auto options = ZelvaneStore::systemOptions(std::move(defaults), mainThread());
  options.readOnly = readOnly;
  return ZelvaneStore::create(std::move(options));
}

std::shared_ptr<ConnectionController> makeConnection(std::shared_ptr<UserDefaults> defaults,
                                                     bool readOnly) {
  auto options = ConnectionController::systemOptions(std::move(defaults), mainThread());
  options.confirmDisconnect = confirmDisconnect;
  options.turnOnLoginItem = [] { LoginItem::set(true, Bundle::applicationPath()); };
  options.readOnly = readOnly;
  return ConnectionController::create(std::move(options));
}

/// Ends the application's loop when the system asks the process to end.
class QuitOnSignal {
 public:
  QuitOnSignal() {
    loop_.onSignal([this](int signal) {
      if (signal == SIGWINCH) return;
      requested_ = true;
      QMetaObject::invokeMethod(qApp, &QCoreApplication::quit, Qt::QueuedConnection);
    });
    thread_ = std::thread([this] { loop_.run(); });
  }
  ~QuitOnSignal() {
    loop_.stop();
    thread_.join();
  }
  bool requested() const { return requested_; }
  QuitOnSignal(const QuitOnSignal&) = delete;
  QuitOnSignal& operator=(const QuitOnSignal&) = delete;

 private:
  std::atomic<bool> requested_ = false;
  RunLoop loop_;
  std::thread thread_;
};

bool connected(const ConnectionController& connection) {
  return connection.state() == ConnectionController::State::connected;
}

}  // namespace

bool prepareWindowSystem(const LaunchOptions& options) {
  // With more than one screen the toolkit leaves panels and docks out of account without this.
  qputenv("QT_RELY_ON_NET_WORKAREA_ATOM", "1");
  // On macOS it brings every program to the front at its start, also one that wants no focus.
  qputenv("QT_MAC_DISABLE_FOREGROUND_APPLICATION_TRANSFORM", "1");
  if (options.renderPath) {
    qputenv("QT_QPA_PLATFORM", QByteArray::fromStdString(platform::pictureWindowSystem()));
    return true;
  }
  // On Wayland, too: a window can neither place itself there nor leave the focus alone.
  const auto ours = QByteArray::fromStdString(platform::columnWindowSystem());
  // Desktops preset the variable for all programs; "offscreen" is somebody's deliberate choice.
  if (qgetenv("QT_QPA_PLATFORM") == "offscreen") return true;
  qputenv("QT_QPA_PLATFORM", ours);
  return platform::columnWindowSystemReachable();
}

AppDelegate::AppDelegate(LaunchOptions options)
    : options_(std::move(options)),
      appearance_(options_.renderPath ? nullptr : followAppearance()),
      store_(makeStore(standardDefaults(), options_.sample)),
      connection_(makeConnection(standardDefaults(), options_.sample)),
      panelSize_(standardDefaults(),
                 options_.sample ? PanelSize::Mode::readOnly : PanelSize::Mode::saving) {}

AppDelegate::~AppDelegate() = default;

int AppDelegate::run(const std::function<void()>& opened) {
  if (options_.renderPath) return renderAndExit(*options_.renderPath);
  if (!options_.sample) {
    (void)Installer(Installer::systemPlace()).refreshHelperIfConnected(bundledParts());
    connection_->refresh();
    (void)LoginItem::repairIfMoved(Bundle::applicationPath());
    updater_ = Updater::start();
  }
  const QuitOnSignal quitOnSignal;
  openPanel();
  opened();
  fillOrStart();
  view_->paintAhead();  // while the window system opens the window
  // A request that came while the window was opened would be lost on a loop that does not run yet.
  const int status = quitOnSignal.requested() ? 0 : QApplication::exec();
  store_->endEditing(std::nullopt);  // what is being typed is kept
  if (PowerOffNotice::comesAlways() && !quitOnSignal.requested()) store_->markQuit();
  return status;
}

/// Begun first: connecting to the bus takes as long as making everything else.
std::unique_ptr<Appearance> AppDelegate::followAppearance() {
  return std::make_unique<Appearance>([this](Appearance::Wishes wishes) {
    if (!view_) return;  // it is made as wished then
    view_->setAppearance(wishes.dark, wishes.reducedMotion);
    panel_->setStill(wishes.reducedMotion);
  });
}

ColumnView::Options AppDelegate::viewOptions() const {
  return {.maxHeight = pictureMaxHeight,
          .dark = options_.dark || darkPalette(),
          .liveClock = !qEnvironmentVariableIsSet("ZELVANE_NOCLOCK"),
          .still = options_.renderPath.has_value(),
          .defaults = standardDefaults()};
}

int AppDelegate::renderAndExit(const std::string& path) {
  store_->setReadOnly();
  if (options_.theme) store_->setTheme(*options_.theme);
  if (options_.showcase) {
    store_->showSamples(showcaseRows(friendCount(), systemTime()));
  } else {
    // Time for the first pass, and for what it reads, to come to its end.
    constexpr std::chrono::seconds patience(3);
    store_->start();
    QTimer::singleShot(patience, qApp, &QCoreApplication::quit);
    QApplication::exec();
  }
  // That it cannot be written is nobody's business here: the caller sees that there is no file.
  columnPicture(store_, connection_, panelSize_, viewOptions(), options_.width)
      .save(QString::fromStdString(path), "PNG");
  return 0;
}

void AppDelegate::openPanel() {
  panel_ = std::make_unique<ColumnPanel>(
      panelSize_,
      ColumnPanel::Callbacks{.onVisible = [this](bool visible) { store_->setVisible(visible); },
                             .onKeysLost = [this] { store_->endEditing(std::nullopt); }});
  const auto wishes = appearance_->wishes();
  panel_->setStill(wishes.reducedMotion);
  auto options = viewOptions();
  options.dark = wishes.dark;
  options.still = wishes.reducedMotion;
  const auto screen = usableScreen();
  if (screen) options.maxHeight = availableHeight(*screen);
  view_ = new ColumnView(store_, connection_, panelSize_, std::move(options),
                         {.onHeight = [this](int height) { panel_->setContentHeight(height); },
                          .menuWanted = [this](QPoint point) { showMenu(point); }});
  panel_->setContent(view_);
  panel_->setAnchor(store_->anchorTop() ? Anchor::top : Anchor::bottom);
  panel_->appear();
  screens_ = std::make_unique<ScreenWatch>([this] { screensChanged(); });
  store_->observe([this](ZelvaneStore::Change change) { storeChanged(change); });
}

void AppDelegate::fillOrStart() {
  if (options_.demo) {
    store_->showSamples(demoRows(*options_.demo, friendCount(), systemTime()));
  } else {
    store_->start();
    powerOff_ = std::make_unique<PowerOffNotice>([this](bool down) { store_->setFrozen(down); });
  }
}

void AppDelegate::storeChanged(ZelvaneStore::Change change) {
  using Change = ZelvaneStore::Change;
  if (change == Change::passed) panel_->lookAround();
  if (change == Change::editing) panel_->setTakesKeys(store_->editing().has_value());
  if (change == Change::passed || change == Change::sessions || change == Change::visible) {
    // As long as anything moves, seen or not: being covered is what the look finds out.
    const auto& rows = store_->sessions();
    panel_->setLooksOften(
        std::any_of(rows.begin(), rows.end(), [](const auto& row) { return row.ongoing(); }));
  }
}

void AppDelegate::screensChanged() {
  const auto screen = usableScreen();
  if (!screen) return;
  view_->setMaxHeight(availableHeight(*screen));
  panel_->place();
}

void AppDelegate::showMenu(QPoint point) {
  auto* menu = new QMenu(panel_.get());
  menu->setAttribute(Qt::WA_DeleteOnClose);
  styleMenu(*menu, view_->theme());
  for (const auto& item : panelMenu({.theme = store_->theme(),
                          .anchor = store_->anchorTop() ? Anchor::top : Anchor::bottom,
                          .customSize = panelSize_.custom(),
                          .opensAtLogin = LoginItem::isOn(),
                          .connected = connected(*connection_),
                          .updates = updater_ != nullptr})) {
    if (item.separator()) {
      menu->addSeparator();
      continue;
    }
    QAction* action = menu->addAction(QString::fromStdString(item.title));
    action->setEnabled(item.enabled);
    // An empty box in front of the others would invite to tick several.
    action->setCheckable(item.checked);
    action->setChecked(item.checked);
    QObject::connect(action, &QAction::triggered, panel_.get(),
                     [this, command = item.command] { perform(command); });
  }
  menu->popup(point);
}

void AppDelegate::perform(MenuCommand command) {
  if (const auto theme = pickedTheme(command)) store_->setTheme(*theme);
  switch (command) {
    case MenuCommand::anchorTop:
      return anchor(Anchor::top);
    case MenuCommand::anchorBottom:
      return anchor(Anchor::bottom);
    case MenuCommand::toggleLogin:
      return LoginItem::set(!LoginItem::isOn(), Bundle::applicationPath());
    case MenuCommand::toggleConnection:
      return toggleConnection();
    case MenuCommand::refresh:
      return store_->refreshNow();
    case MenuCommand::checkForUpdates:
      return updater_->checkForUpdates();
    case MenuCommand::quit:
      // Not always when the system asks: that may be the beginning of a shutdown.
      store_->markQuit();
      return QApplication::quit();
    case MenuCommand::resetSize:
      panelSize_.set({});
      view_->refresh();
      return panel_->place();
    default:
      return;
  }
}

void AppDelegate::toggleConnection() {
  if (connected(*connection_)) {
    connection_->disconnect();
  } else {
    connection_->connect(LoginItem::isOn());
  }
}

void AppDelegate::anchor(Anchor anchor) {
  store_->setAnchorTop(anchor == Anchor::top);
  panel_->setAnchor(anchor);
}

}  // namespace zelvane
