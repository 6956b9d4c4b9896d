// Whether the desktop wants dark or light colours. Main thread.
#pragma once

#include <QtCore/QObject>
#include <QtCore/QTimer>
#include <functional>
#include <optional>

namespace zelvane {

/// Dark when the application's own palette is.
bool darkPalette();

/// Follows the desktop's wish: what its portal says, or the palette when it says nothing.
class Appearance : public QObject {
 public:
  /// Calls `changed` when the answer changes; the portal's first answer comes that way, too.
  explicit Appearance(std::function<void(bool dark)> changed);

  bool dark() const { return dark_; }

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void askPortal();
  void decide();

  std::function<void(bool)> changed_;
  std::optional<bool> portalDark_;
  bool dark_;
  QTimer ask_;  ///< its `start` slot is what the portal's signal calls
};

}  // namespace zelvane
