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

/// What the portal answered; invalid when it did not, or does not know the key.
QVariant answerIn(const QDBusMessage& reply) {
  if (reply.type() != QDBusMessage::ReplyMessage || reply.arguments().isEmpty()) return {};
  return unwrapped(reply.arguments().first());
}

std::optional<bool> darkFrom(const QVariant& answer) {
  enum ColorScheme : uint { none, dark, light };
  const uint scheme = answer.toUInt();
  if (scheme != dark && scheme != light) return std::nullopt;
  return scheme == dark;
}

}  // namespace

bool darkPalette() { return QApplication::palette().color(QPalette::Window).lightness() < 128; }

Appearance::Appearance(std::function<void(Wishes)> changed)
    : changed_(std::move(changed)), wishes_{.dark = darkPalette()} {
  qApp->installEventFilter(this);
  ask_.setSingleShot(true);
  connect(&ask_, &QTimer::timeout, this, &Appearance::askPortal);
  QDBusConnection::sessionBus().connect(service, path, interface, "SettingChanged", &ask_,
                                        SLOT(start()));
  askPortal();
}

void Appearance::askPortal() {
  ask("org.freedesktop.appearance", "color-scheme",
      [this](const QDBusMessage& reply) { portalDark_ = darkFrom(answerIn(reply)); });
  ask("org.freedesktop.appearance", "reduced-motion",
      [this](const QDBusMessage& reply) { portalReduced_ = answerIn(reply).toUInt() == 1; });
  ask("org.gnome.desktop.interface", "enable-animations", [this](const QDBusMessage& reply) {
    const QVariant answer = answerIn(reply);
    animationsOff_ = answer.typeId() == QMetaType::Bool && !answer.toBool();
  });
}

void Appearance::ask(const char* group, const char* key,
                     std::function<void(const QDBusMessage&)> answered) {
  auto question = QDBusMessage::createMethodCall(service, path, interface, "Read");
  question.setArguments({QString::fromLatin1(group), QString::fromLatin1(key)});
  constexpr int patienceInMilliseconds = 500;
  const auto call = QDBusConnection::sessionBus().asyncCall(question, patienceInMilliseconds);
  auto* watcher = new QDBusPendingCallWatcher(call, this);
  connect(watcher, &QDBusPendingCallWatcher::finished, this,
          [this, answered = std::move(answered)](QDBusPendingCallWatcher* finished) {
            finished->deleteLater();
            answered(finished->reply());
            decide();
          });
}

void Appearance::decide() {
  const Wishes wishes{.dark = portalDark_.value_or(darkPalette()),
                      .reducedMotion = animationsOff_ || portalReduced_};
  if (std::exchange(wishes_, wishes) != wishes) changed_(wishes);
}

bool Appearance::eventFilter(QObject* watched, QEvent* event) {
  if (watched == qApp && event->type() == QEvent::ApplicationPaletteChange) decide();
  return QObject::eventFilter(watched, event);
}

}  // namespace zelvane
