// The bus on which the programs of a session talk to each other.
#pragma once

#include <chrono>
#include <functional>

namespace zelvane::platform {

/// Waits for a word of the session's bus, `patience` at most where somebody has its place and says
/// nothing; not at all where nobody listens, and on systems without one. For as long as it lives,
/// this process is told another place than a silent one's, where nobody listens: the toolkit would
/// wait for an answer without end. Programs that are started afterwards have theirs back. No other
/// thread may run at its beginning.
class SilentBus {
 public:
  explicit SilentBus(std::chrono::duration<double> patience);
  ~SilentBus();
  SilentBus(const SilentBus&) = delete;
  SilentBus& operator=(const SilentBus&) = delete;

 private:
  std::function<void()> giveBack_;  ///< null when the bus is not silent
};

}  // namespace zelvane::platform
