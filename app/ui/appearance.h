// How the desktop wants its programs to look: dark or light, moving or still. Main thread.
#pragma once

#include <QtCore/QObject>
#include <QtCore/QString>
#include <QtCore/QTimer>
#include <functional>
#include <optional>

class QDBusMessage;

namespace zelvane {

/// Dark when the application's own palette is.
bool darkPalette();

/// Follows the desktop's wishes: what its portal says. When it says nothing, the palette tells
/// whether it is dark, and things move.
class Appearance : public QObject {
 public:
  struct Wishes {
    bool dark = false;
    bool reducedMotion = false;
    bool operator==(const Wishes&) const = default;
  };

  /// Calls `changed` when the answer changes; the portal's first answers come that way, too.
  explicit Appearance(std::function<void(Wishes)> changed);

  Wishes wishes() const { return wishes_; }

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
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

}  // namespace zelvane
