// The desktop's message buses, connected to without keeping anybody waiting.
#pragma once

#include <QtDBus/QDBusConnection>
#include <functional>

namespace zelvane {

/// Calls `then` on the main thread once the bus that `bus` names is connected to, or cannot be. The
/// connecting is done on a thread of its own: it may wait for ever.
void whenConnected(QDBusConnection (*bus)(), std::function<void()> then);

}  // namespace zelvane
