// The column as a program: makes the long-lived objects and wires them together. Main thread.
#pragma once

#include <functional>
#include <memory>

#include "app/connect/connection_controller.h"
#include "app/model/store/store.h"
#include "app/ui/appearance.h"
#include "app/ui/column/column_view.h"
#include "app/ui/launch_options.h"
#include "app/ui/panel/column_panel.h"
#include "app/ui/panel/panel_menu.h"
#include "app/ui/panel/panel_size.h"
#include "app/ui/panel/screens.h"
#include "app/ui/power_off_notice.h"
#include "app/ui/updater.h"

namespace zelvane {

/// Chooses the toolkit's window system, before the toolkit starts; false when it is out of reach.
bool prepareWindowSystem(const LaunchOptions& options);

class AppDelegate {
 public:
  /// Needs the toolkit's application object, and must be gone before it.
  explicit AppDelegate(LaunchOptions options);
  ~AppDelegate();
  AppDelegate(const AppDelegate&) = delete;
  AppDelegate& operator=(const AppDelegate&) = delete;

  /// Does what the options ask for, until the user or the system ends it; the exit status. Calls
  /// `opened` once the column's window is open, before anything else is started.
  int run(const std::function<void()>& opened);

 private:
  int renderAndExit(const std::string& path);
  std::unique_ptr<Appearance> followAppearance();
  void openPanel();
  void fillOrStart();
  ColumnView::Options viewOptions() const;
  void storeChanged(ZelvaneStore::Change change);
  void screensChanged();
  void showMenu(QPoint point);
  void perform(MenuCommand command);
  void anchor(Anchor anchor);
  void toggleConnection();

  LaunchOptions options_;
  std::unique_ptr<Appearance> appearance_;  ///< null when only a picture is wanted
  std::shared_ptr<ZelvaneStore> store_;
  std::shared_ptr<ConnectionController> connection_;
  PanelSize panelSize_;
  std::unique_ptr<Updater> updater_;  ///< null where there is none
  std::unique_ptr<ColumnPanel> panel_;
  ColumnView* view_ = nullptr;  ///< owned by the panel
  std::unique_ptr<ScreenWatch> screens_;
  std::unique_ptr<PowerOffNotice> powerOff_;
};

}  // namespace zelvane
