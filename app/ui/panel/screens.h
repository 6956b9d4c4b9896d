// The screen that the column stands on. Main thread.
#pragma once

#include <QtCore/QObject>
#include <QtCore/QTimer>
#include <QtGui/QScreen>
#include <functional>
#include <optional>

#include "app/ui/panel/placement.h"

namespace zelvane {

/// The usable area of the main screen, else of the first one; nothing without a screen.
std::optional<Area> usableScreen();

/// Tells when screens come, go or change their usable area: once for many changes at a time.
class ScreenWatch : public QObject {
 public:
  explicit ScreenWatch(std::function<void()> changed);

 private:
  void watch(QScreen* screen);

  QTimer soon_;
};

}  // namespace zelvane
