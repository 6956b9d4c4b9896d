// The column's entry point: reads the command line, makes sure it runs once, and hands over.
#include <QtWidgets/QApplication>
#include <chrono>
#include <iostream>
#include <optional>
#include <sys/stat.h>
#include <thread>

#include "platform/session_bus.h"

#include "core/bundle.h"
#include "core/localization.h"

#include "app/login/login_item.h"
#include "app/notes/notes_self_test.h"
#include "app/ui/application.h"
#include "app/ui/fonts_ahead.h"
#include "app/ui/friends/app_icon.h"
#include "app/ui/single_instance.h"

using namespace zelvane;

namespace {

/// Answers what needs no display, mistakes too; nothing when the column is to be opened.
std::optional<int> answered(const LaunchOptions& options) {
  if (options.selfTestNotes) return runNotesSelfTest(std::cout, std::cerr) ? 0 : 1;
  if (options.selfTestLoginItem) return LoginItem::selfTest(std::cout) ? 0 : 1;
  if (options.help) {
    std::cout << usage() << '\n';
    return 0;
  }
  if (options.version) {
    std::cout << "Zelvane " << Bundle::version() << '\n';
    return 0;
  }
  if (options.mistake.empty()) return std::nullopt;
  std::cerr << options.mistake << ' ' << L("(쓰는 법: zelvane-app --help)") << '\n';
  return 2;
}

}  // namespace

int main(int argc, char** argv) {
  umask(077);  // what is written is for its user alone
  Bundle::useStringTable();
  const auto options = launchOptions({argv + 1, argv + argc});
  if (const auto status = answered(options)) return *status;
  if (!prepareWindowSystem(options)) {
    std::cerr << L("화면에 연결할 수 없어서 Zelvane을 열지 못했어요. DISPLAY 값을 확인해 주세요.")
              << '\n';
    return 1;
  }
  std::optional<platform::SilentBus> bus;
  if (!options.renderPath) bus.emplace(std::chrono::seconds(2));
  std::optional<FontsAhead> fonts(std::in_place);
  const auto sleep = [](Seconds pause) { std::this_thread::sleep_for(pause); };
  if (!options.sample && !becomeSingleInstance(instanceLockPath(), sleep)) return 0;
  QApplication application(argc, argv);
  fonts.reset();
  QApplication::setStyle(QStringLiteral("Fusion"));
  QApplication::setApplicationName(QStringLiteral("zelvane"));
  QApplication::setDesktopFileName(QStringLiteral("zelvane"));
  QApplication::setWindowIcon(QPixmap::fromImage(appIcon(64)));
  return AppDelegate(options).run([&bus] { bus.reset(); });
}
