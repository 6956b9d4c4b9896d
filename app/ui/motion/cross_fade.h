// Lets what a widget looked like, and how high it was, pass into what it is now. Main thread.
#pragma once

#include <QtCore/QVariantAnimation>
#include <QtGui/QPainter>
#include <QtGui/QPixmap>
#include <QtWidgets/QWidget>
#include <chrono>
#include <functional>

namespace zelvane {

/// As long as the panel takes to grow.
inline constexpr std::chrono::milliseconds changeTakes{170};

class CrossFade {
 public:
  /// The widget must outlive it, and looks by now as it did before, with its children.
  /// `stepped` is called when it is to be painted anew, and may have another height.
  CrossFade(QWidget& host, const std::function<void()>& stepped);

  /// How much of the new look is to be seen, 0 to 1.
  double share() const { return animation_.currentValue().toDouble(); }
  bool over() const { return animation_.state() == QAbstractAnimation::Stopped; }
  /// The height by now of what is to be so high in the end.
  int heightTowards(int wanted) const;
  /// Paints what is left of the old one.
  void paint(QPainter& painter) const;

 private:
  int heightBefore_;
  QPixmap before_;
  QVariantAnimation animation_;
};

}  // namespace zelvane
