#include "app/ui/appearance.h"

#include <QtCore/QObject>
#include <QtCore/QPointer>
#include <QtCore/QString>
#include <QtCore/QTimer>
#include <QtDBus/QDBusMessage>
#include <QtDBus/QDBusPendingCallWatcher>
#include <QtDBus/QDBusPendingReply>
#include <QtDBus/QDBusVariant>
#include <QtWidgets/QApplication>
#include <optional>

#include "app/ui/linux/bus.h"

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

/// Asks the desktop's portal, and again whenever it says that something changed.
class Appearance::Watch : public QObject {
 public:
  explicit Watch(std::function<void(Wishes)> changed);
  Wishes wishes() const { return wishes_; }

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void listen();
  void askPortal();
  void ask(const char* group, const char* key, std::function<void(const QDBusMessage&)> answered);
  void decide();

  std::function<void(Wishes)> changed_;
  std::optional<bool> portalDark_;
  bool animationsOff_ = false;  ///< by the switch of desktops that share GNOME's settings
  bool portalReduced_ = false;  ///< by the portal's own
  Wishes wishes_;
  QTimer ask_;  ///< its `start` slot is what the portal's signal calls
};

Appearance::Watch::Watch(std::function<void(Wishes)> changed)
    : changed_(std::move(changed)), wishes_{.dark = darkPalette()} {
  qApp->installEventFilter(this);
  ask_.setSingleShot(true);
  connect(&ask_, &QTimer::timeout, this, &Watch::askPortal);
  whenConnected(QDBusConnection::sessionBus, [watch = QPointer(this)] {
    if (watch) watch->listen();
  });
}

void Appearance::Watch::listen() {
  QDBusConnection::sessionBus().connect(service, path, interface, "SettingChanged", &ask_,
                                        SLOT(start()));
  askPortal();
}

void Appearance::Watch::askPortal() {
  ask("org.freedesktop.appearance", "color-scheme",
      [this](const QDBusMessage& reply) { portalDark_ = darkFrom(answerIn(reply)); });
  ask("org.freedesktop.appearance", "reduced-motion",
      [this](const QDBusMessage& reply) { portalReduced_ = answerIn(reply).toUInt() == 1; });
  ask("org.gnome.desktop.interface", "enable-animations", [this](const QDBusMessage& reply) {
    const QVariant answer = answerIn(reply);
    animationsOff_ = answer.typeId() == QMetaType::Bool && !answer.toBool();
  });
}

void Appearance::Watch::ask(const char* group, const char* key,
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

void Appearance::Watch::decide() {
  const Wishes wishes{.dark = portalDark_.value_or(darkPalette()),
                      .reducedMotion = animationsOff_ || portalReduced_};
  if (std::exchange(wishes_, wishes) != wishes) changed_(wishes);
}

bool Appearance::Watch::eventFilter(QObject* watched, QEvent* event) {
  if (watched == qApp && event->type() == QEvent::ApplicationPaletteChange) decide();
  return QObject::eventFilter(watched, event);
}

Appearance::Appearance(std::function<void(Wishes)> changed)
    : watch_(std::make_unique<Watch>(std::move(changed))) {}

Appearance::~Appearance() = default;

Appearance::Wishes Appearance::wishes() const { return watch_->wishes(); }

}  // namespace zelvane
