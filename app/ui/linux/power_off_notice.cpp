#include "app/ui/power_off_notice.h"

#include <QtGui/QAction>

#include "app/ui/linux/bus.h"

namespace zelvane {

struct PowerOffNotice::Listener {
  QAction goingDown;  ///< takes the signal: its state is the message's argument

  void listen() {
    QDBusConnection::systemBus().connect(
        QStringLiteral("org.freedesktop.login1"), QStringLiteral("/org/freedesktop/login1"),
        QStringLiteral("org.freedesktop.login1.Manager"), QStringLiteral("PrepareForShutdown"),
        &goingDown, SLOT(setChecked(bool)));
  }
};

PowerOffNotice::PowerOffNotice(std::function<void(bool goingDown)> changed)
    : listener_(std::make_shared<Listener>()) {
  listener_->goingDown.setCheckable(true);
  QObject::connect(&listener_->goingDown, &QAction::toggled, &listener_->goingDown,
                   std::move(changed));
  whenConnected(QDBusConnection::systemBus, [listener = std::weak_ptr(listener_)] {
    if (const auto alive = listener.lock()) alive->listen();
  });
}

PowerOffNotice::~PowerOffNotice() = default;

bool PowerOffNotice::comesAlways() { return false; }

}  // namespace zelvane
