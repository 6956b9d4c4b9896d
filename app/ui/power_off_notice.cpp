#include "app/ui/power_off_notice.h"

#include <QtDBus/QDBusConnection>

namespace zelvane {

PowerOffNotice::PowerOffNotice(std::function<void(bool goingDown)> changed) {
  goingDown_.setCheckable(true);
  QObject::connect(&goingDown_, &QAction::toggled, &goingDown_, std::move(changed));
  QDBusConnection::systemBus().connect(
      QStringLiteral("org.freedesktop.login1"), QStringLiteral("/org/freedesktop/login1"),
      QStringLiteral("org.freedesktop.login1.Manager"), QStringLiteral("PrepareForShutdown"),
      &goingDown_, SLOT(setChecked(bool)));
}

}  // namespace zelvane
