#include "app/ui/power_off_notice.h"

#include <QtCore/QCoreApplication>
#include <QtDBus/QDBusConnection>
#include <QtGui/QAction>
#include <thread>

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
  // Connecting waits for the bus, for ever if need be.
  std::thread([listener = std::weak_ptr(listener_)] {
    (void)QDBusConnection::systemBus();
    QMetaObject::invokeMethod(
        qApp,
        [listener] {
          if (const auto alive = listener.lock()) alive->listen();
        },
        Qt::QueuedConnection);
  }).detach();
}

PowerOffNotice::~PowerOffNotice() = default;

}  // namespace zelvane
