#include "app/ui/appearance.h"

#include <QtDBus/QDBusConnection>
#include <QtDBus/QDBusMessage>
#include <QtDBus/QDBusPendingCallWatcher>
#include <QtDBus/QDBusPendingReply>
#include <QtDBus/QDBusVariant>
#include <QtGui/QPalette>
#include <QtWidgets/QApplication>

namespace zelvane {
namespace {

constexpr auto service = "org.freedesktop.portal.Desktop";
constexpr auto path = "/org/freedesktop/portal/desktop";
constexpr auto interface = "org.freedesktop.portal.Settings";

/// The portal wraps its answer in a variant, some versions in two.
QVariant unwrapped(QVariant value) {
  while (value.canConvert<QDBusVariant>()) value = value.value<QDBusVariant>().variant();
  return value;
}

std::optional<bool> darkFrom(const QDBusMessage& reply) {
  if (reply.type() != QDBusMessage::ReplyMessage || reply.arguments().isEmpty()) {
    return std::nullopt;
  }
  enum ColorScheme : uint { none, dark, light };
  const uint scheme = unwrapped(reply.arguments().first()).toUInt();
  if (scheme != dark && scheme != light) return std::nullopt;
  return scheme == dark;
}

}  // namespace

bool darkPalette() { return QApplication::palette().color(QPalette::Window).lightness() < 128; }

Appearance::Appearance(std::function<void(bool dark)> changed)
    : changed_(std::move(changed)), dark_(darkPalette()) {
  qApp->installEventFilter(this);
  ask_.setSingleShot(true);
  connect(&ask_, &QTimer::timeout, this, &Appearance::askPortal);
  QDBusConnection::sessionBus().connect(service, path, interface, "SettingChanged", &ask_,
                                        SLOT(start()));
  askPortal();
}

void Appearance::askPortal() {
  auto question = QDBusMessage::createMethodCall(service, path, interface, "Read");
  question.setArguments(
      {QStringLiteral("org.freedesktop.appearance"), QStringLiteral("color-scheme")});
  constexpr int patienceInMilliseconds = 500;
  const auto call = QDBusConnection::sessionBus().asyncCall(question, patienceInMilliseconds);
  auto* watcher = new QDBusPendingCallWatcher(call, this);
  connect(watcher, &QDBusPendingCallWatcher::finished, this,
          [this](QDBusPendingCallWatcher* finished) {
            finished->deleteLater();
            portalDark_ = darkFrom(finished->reply());
            decide();
          });
}

void Appearance::decide() {
  const bool dark = portalDark_.value_or(darkPalette());
  if (std::exchange(dark_, dark) != dark) changed_(dark);
}

bool Appearance::eventFilter(QObject* watched, QEvent* event) {
  if (watched == qApp && event->type() == QEvent::ApplicationPaletteChange) decide();
  return QObject::eventFilter(watched, event);
}

}  // namespace zelvane
