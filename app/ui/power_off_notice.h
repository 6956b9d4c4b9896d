// Tells when the machine is about to go down, or after all is not. Main thread.
#pragma once

#include <QtGui/QAction>
#include <functional>

namespace zelvane {

class PowerOffNotice {
 public:
  /// `changed` gets whether the machine is going down. Where the system tells nobody, nothing ever
  /// comes.
  explicit PowerOffNotice(std::function<void(bool goingDown)> changed);
  PowerOffNotice(const PowerOffNotice&) = delete;
  PowerOffNotice& operator=(const PowerOffNotice&) = delete;

 private:
  QAction goingDown_;  ///< takes the signal: its state is the message's argument
};

}  // namespace zelvane
