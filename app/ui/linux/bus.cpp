#include "app/ui/linux/bus.h"

#include <QtCore/QCoreApplication>
#include <thread>

namespace zelvane {

void whenConnected(QDBusConnection (*bus)(), std::function<void()> then) {
  std::thread([bus, then = std::move(then)]() mutable {
    (void)bus();
    QMetaObject::invokeMethod(qApp, std::move(then), Qt::QueuedConnection);
  }).detach();
}

}  // namespace zelvane
