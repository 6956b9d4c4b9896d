#include "platform/folder_watcher.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdint>
#include <filesystem>
#include <mutex>
#include <poll.h>
#include <string_view>
#include <sys/eventfd.h>
#include <sys/inotify.h>
#include <thread>
#include <unistd.h>

#include "platform/thread_name.h"

namespace zelvane::platform {
namespace {

/// Entries that come, go and change, and the end of the folder itself.
constexpr std::uint32_t folderEvents = IN_CREATE | IN_MOVED_TO | IN_MOVED_FROM | IN_DELETE |
                                       IN_MODIFY | IN_DELETE_SELF | IN_MOVE_SELF | IN_ONLYDIR;
/// What can make a missing folder below an existing ancestor appear.
constexpr std::uint32_t ancestorEvents =
    IN_CREATE | IN_MOVED_TO | IN_DELETE_SELF | IN_MOVE_SELF | IN_ONLYDIR;

/// One watched folder: a watch on it, or while it is missing on its nearest existing ancestor.
struct Target {
  std::filesystem::path folder;
  int watch = -1;
  bool present = false;
  std::string awaited;  ///< while missing: the entry of the ancestor that leads to it
};

}  // namespace

class FolderWatcher::Worker {
 public:
  Worker(std::vector<std::string> folders, std::function<void()> changed)
      : changed_(std::move(changed)),
        events_(inotify_init1(IN_CLOEXEC | IN_NONBLOCK)),
        stop_(eventfd(0, EFD_CLOEXEC)) {
    for (auto& folder : folders) targets_.push_back(Target{std::move(folder)});
    for (auto& target : targets_) aim(target);
    // Without them (the number for each user is limited) there is nothing to wait for.
    if (events_ >= 0 && stop_ >= 0) thread_ = std::thread([this] { run(); });
  }

  ~Worker() {
    const std::uint64_t one = 1;
    [[maybe_unused]] const auto written = write(stop_, &one, sizeof one);
    if (thread_.joinable()) thread_.join();
    close(events_);
    close(stop_);
  }

  void recheck() {
    const std::lock_guard lock(lock_);
    for (auto& target : targets_) {
      // The same folder gives the same watch again, another one a new watch, a missing one none.
      const int watch =
          inotify_add_watch(events_, target.folder.c_str(), folderEvents | IN_MASK_ADD);
      if (watch != (target.present ? target.watch : -1)) aim(target);
    }
  }

 private:
  void run() {
    nameThisThread("zelvane.watch");
    std::array<pollfd, 2> waits{pollfd{events_, POLLIN, 0}, pollfd{stop_, POLLIN, 0}};
    while (true) {
      if (poll(waits.data(), waits.size(), -1) < 0 && errno != EINTR) return;
      if (waits[1].revents != 0) return;
      if (takeEvents()) changed_();
    }
  }

  /// Reads all waiting events; true when a watched folder was concerned.
  bool takeEvents() {
    const std::lock_guard lock(lock_);
    alignas(inotify_event) std::array<char, 16384> buffer;
    bool concerned = false;
    ssize_t count = 0;
    while ((count = read(events_, buffer.data(), buffer.size())) > 0) {
      for (const char* at = buffer.data(); at < buffer.data() + count;) {
        const auto* event = reinterpret_cast<const inotify_event*>(at);
        concerned = concerns(*event, event->len > 0 ? at + sizeof *event : "") || concerned;
        at += sizeof *event + event->len;
      }
    }
    return concerned;
  }

  bool concerns(const inotify_event& event, std::string_view name) {
    bool concerned = false;
    if (event.mask & IN_Q_OVERFLOW) {
      for (auto& target : targets_) aim(target);
      concerned = true;
    }
    for (auto& target : targets_) {
      if (target.watch != event.wd) continue;
      const bool gone = (event.mask & (IN_DELETE_SELF | IN_MOVE_SELF | IN_IGNORED)) != 0;
      if (target.present || gone || name == target.awaited) {
        const bool wasPresent = target.present;
        if (gone || !target.present) aim(target);
        concerned = concerned || wasPresent || target.present;
      }
    }
    return concerned;
  }

  /// Watches the target, or what must change for it to appear.
  void aim(Target& target) {
    // The last watch may be shared with another target that waits at the same ancestor.
    const int last = target.watch;
    target.watch = -1;
    const bool shared = std::any_of(targets_.begin(), targets_.end(),
                                    [&](const Target& other) { return other.watch == last; });
    if (last >= 0 && !shared) inotify_rm_watch(events_, last);

    for (int attempt = 0; attempt < 8; ++attempt) {
      target.watch = inotify_add_watch(events_, target.folder.c_str(), folderEvents | IN_MASK_ADD);
      target.present = target.watch >= 0;
      if (target.present) return;
      const auto awaited = watchAncestor(target);
      // It may have appeared between the two looks: then look again.
      std::error_code failed;
      if (!std::filesystem::exists(awaited, failed)) return;
    }
  }

  /// Watches the nearest existing ancestor; the path below it whose appearance is awaited.
  std::filesystem::path watchAncestor(Target& target) {
    std::filesystem::path awaited = target.folder;
    for (auto folder = awaited.parent_path(); !folder.empty(); folder = folder.parent_path()) {
      target.watch = inotify_add_watch(events_, folder.c_str(), ancestorEvents | IN_MASK_ADD);
      if (target.watch >= 0 || folder == folder.root_path()) break;
      awaited = folder;
    }
    target.awaited = awaited.filename().string();
    return awaited;
  }

  std::function<void()> changed_;
  std::mutex lock_;  ///< guards the targets
  std::vector<Target> targets_;
  int events_;
  int stop_;
  std::thread thread_;
};

FolderWatcher::FolderWatcher(std::vector<std::string> folders, std::function<void()> changed)
    : worker_(std::make_unique<Worker>(std::move(folders), std::move(changed))) {}

FolderWatcher::~FolderWatcher() = default;

void FolderWatcher::recheck() { worker_->recheck(); }

}  // namespace zelvane::platform
