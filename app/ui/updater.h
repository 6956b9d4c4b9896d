// New versions of the application: looked for once a day, and when the user asks. Main thread.
#pragma once

#include <memory>

namespace zelvane {

class Updater {
 public:
  /// Starts looking; nothing where this build has no updater.
  static std::unique_ptr<Updater> start();
  virtual ~Updater() = default;
  /// Looks now, and shows the user what it finds.
  virtual void checkForUpdates() = 0;
};

}  // namespace zelvane
