// The folder watcher of a world that tells itself what changes: linked in place of the platform's.
#include <algorithm>
#include <set>

#include "platform/folder_watcher.h"

#include "tests/simulator/virtual_time.h"

namespace zelvane {
namespace {

struct Watch {
  std::vector<std::string> folders;
  std::function<void()> changed;
};

using WatchPtr = std::shared_ptr<Watch>;

std::set<WatchPtr>& watches() {
  static std::set<WatchPtr> all;
  return all;
}

}  // namespace

class platform::FolderWatcher::Worker {
 public:
  Worker(std::vector<std::string> folders, std::function<void()> changed)
      : watch_(std::make_shared<Watch>(Watch{std::move(folders), std::move(changed)})) {
    watches().insert(watch_);
  }
  ~Worker() { watches().erase(watch_); }

 private:
  WatchPtr watch_;
};

platform::FolderWatcher::FolderWatcher(std::vector<std::string> folders,
                                       std::function<void()> changed)
    : worker_(std::make_unique<Worker>(std::move(folders), std::move(changed))) {}

platform::FolderWatcher::~FolderWatcher() = default;

void platform::FolderWatcher::recheck() {}

void test::killWatchers() { watches().clear(); }

void test::folderChanged(const std::string& folder) {
  constexpr Seconds untilTold(0.002);
  VirtualTime::shared().after(untilTold, [folder] {
    for (const auto& watch : std::set(watches())) {
      const auto& folders = watch->folders;
      if (std::find(folders.begin(), folders.end(), folder) != folders.end()) watch->changed();
    }
  });
}

}  // namespace zelvane
