#include "app/ui/panel/screens.h"

#include <QtGui/QGuiApplication>

namespace zelvane {

std::optional<Area> usableScreen() {
  const auto screens = QGuiApplication::screens();
  const QScreen* screen = QGuiApplication::primaryScreen();
  if (!screen && !screens.isEmpty()) screen = screens.first();
  if (!screen) return std::nullopt;
  const QRect area = screen->availableGeometry();
  return Area{area.x(), area.y(), area.width(), area.height()};
}

ScreenWatch::ScreenWatch(std::function<void()> changed) {
  soon_.setSingleShot(true);
  soon_.setInterval(0);
  connect(&soon_, &QTimer::timeout, this, std::move(changed));
  const auto again = [this] { soon_.start(); };
  connect(qGuiApp, &QGuiApplication::primaryScreenChanged, this, again);
  connect(qGuiApp, &QGuiApplication::screenRemoved, this, again);
  connect(qGuiApp, &QGuiApplication::screenAdded, this, [this](QScreen* screen) {
    watch(screen);
    soon_.start();
  });
  for (QScreen* screen : QGuiApplication::screens()) watch(screen);
}

void ScreenWatch::watch(QScreen* screen) {
  connect(screen, &QScreen::availableGeometryChanged, this, [this] { soon_.start(); });
}

}  // namespace zelvane
