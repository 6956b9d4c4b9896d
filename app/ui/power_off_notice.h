// Tells when the machine is about to go down, or after all is not. Main thread.
#pragma once

#include <functional>
#include <memory>

namespace zelvane {

class PowerOffNotice {
 public:
  /// `changed` gets whether the machine is going down. Where the system tells nobody, nothing ever
  /// comes; one that does not answer is waited for elsewhere.
  explicit PowerOffNotice(std::function<void(bool goingDown)> changed);
  ~PowerOffNotice();
  /// Whether it comes before every end of the user's session. Then a program that is asked to end
  /// without it is asked by the user.
  static bool comesAlways();
  PowerOffNotice(const PowerOffNotice&) = delete;
  PowerOffNotice& operator=(const PowerOffNotice&) = delete;

 private:
  struct Listener;
  std::shared_ptr<Listener> listener_;
};

}  // namespace zelvane
