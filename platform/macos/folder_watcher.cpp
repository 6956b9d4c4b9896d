#include "platform/folder_watcher.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdint>
#include <dirent.h>
#include <fcntl.h>
#include <filesystem>
#include <map>
#include <mutex>
#include <sys/event.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>
#include <utility>

#include "platform/thread_name.h"

namespace zelvane::platform {
namespace {

constexpr std::uint32_t goneNotes = NOTE_DELETE | NOTE_RENAME | NOTE_REVOKE;
constexpr std::uint32_t folderNotes = NOTE_WRITE | goneNotes;
constexpr std::uint32_t fileNotes = NOTE_WRITE | NOTE_EXTEND | goneNotes;

/// A folder's own events do not tell of files that change in place: each takes a descriptor more,
/// of which a program of the desktop has 256. The files that changed last are the ones that matter.
constexpr std::size_t mostFilesInFolder = 64;

/// Which file or folder a name stands for.
using Identity = std::pair<std::uint64_t, std::uint64_t>;

Identity identityOf(const struct stat& status) {
  return {static_cast<std::uint64_t>(status.st_dev), status.st_ino};
}

/// A descriptor that serves for events alone: it does not keep a disk from being ejected.
class EventDescriptor {
 public:
  explicit EventDescriptor(int fd = -1) : fd_(fd) {}
  EventDescriptor(EventDescriptor&& other) noexcept : fd_(std::exchange(other.fd_, -1)) {}
  EventDescriptor& operator=(EventDescriptor&& other) noexcept {
    std::swap(fd_, other.fd_);
    return *this;
  }
  ~EventDescriptor() {
    // The queue forgets what is closed.
    if (fd_ >= 0) close(fd_);
  }
  static EventDescriptor folder(const std::string& path) {
    return EventDescriptor(open(path.c_str(), O_EVTONLY | O_DIRECTORY | O_CLOEXEC));
  }
  static EventDescriptor file(const std::string& path) {
    return EventDescriptor(open(path.c_str(), O_EVTONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
  }
  int fd() const { return fd_; }

 private:
  int fd_;
};

struct WatchedFile {
  EventDescriptor descriptor;
  Identity identity;
};

struct FoundFile {
  std::string name;
  Identity identity;
  timespec changed;
};

/// One watched folder: a watch on it and on its files, or while it is missing on its nearest
/// existing ancestor.
struct Target {
  std::filesystem::path folder;
  EventDescriptor descriptor{};
  bool present = false;
  Identity identity{};  ///< while present
  std::map<std::string, WatchedFile> files{};
};

/// The folder's plain files, the most lately changed ones when there are many. Keys are secrets:
/// nobody opens them.
std::vector<FoundFile> filesIn(const std::filesystem::path& folder) {
  std::vector<FoundFile> found;
  DIR* listing = opendir(folder.c_str());
  if (!listing) return found;
  while (const dirent* entry = readdir(listing)) {
    struct stat status {};
    const std::string name = entry->d_name;
    if (name.ends_with(".key") ||
        fstatat(dirfd(listing), entry->d_name, &status, AT_SYMLINK_NOFOLLOW) != 0 ||
        !S_ISREG(status.st_mode)) {
      continue;
    }
    found.push_back({name, identityOf(status), status.st_mtimespec});
  }
  closedir(listing);
  std::sort(found.begin(), found.end(), [](const FoundFile& a, const FoundFile& b) {
    return std::pair(a.changed.tv_sec, a.changed.tv_nsec) >
           std::pair(b.changed.tv_sec, b.changed.tv_nsec);
  });
  if (found.size() > mostFilesInFolder) found.erase(found.begin() + mostFilesInFolder, found.end());
  return found;
}

}  // namespace

class FolderWatcher::Worker {
 public:
  Worker(std::vector<std::string> folders, std::function<void()> changed)
      : changed_(std::move(changed)), queue_(kqueue()) {
    fcntl(queue_, F_SETFD, FD_CLOEXEC);
    for (auto& folder : folders) targets_.push_back(Target{std::move(folder)});
    for (auto& target : targets_) aim(target);
    // Without a queue there is nothing to wait for, and without the event nothing would end it.
    if (tell(EV_ADD | EV_CLEAR, 0)) thread_ = std::thread([this] { run(); });
  }

  ~Worker() {
    tell(0, NOTE_TRIGGER);
    if (thread_.joinable()) thread_.join();
    if (queue_ >= 0) close(queue_);
  }

  void recheck() {
    const std::lock_guard lock(lock_);
    for (auto& target : targets_) {
      struct stat status {};
      const bool exists = stat(target.folder.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
      if (exists != target.present || (exists && identityOf(status) != target.identity)) {
        aim(target);
      } else if (exists) {
        watchFiles(target);
      }
    }
  }

 private:
  using Event = struct kevent;

  /// The event of our own, by which the thread is ended.
  bool tell(std::uint16_t flags, std::uint32_t notes) const {
    constexpr std::uintptr_t own = 0;
    Event change{};
    EV_SET(&change, own, EVFILT_USER, flags, notes, 0, nullptr);
    return kevent(queue_, &change, 1, nullptr, 0, nullptr) == 0;
  }

  bool watch(const EventDescriptor& descriptor, std::uint32_t notes) const {
    if (descriptor.fd() < 0) return false;
    Event change{};
    EV_SET(&change, static_cast<std::uintptr_t>(descriptor.fd()), EVFILT_VNODE, EV_ADD | EV_CLEAR,
           notes, 0, nullptr);
    return kevent(queue_, &change, 1, nullptr, 0, nullptr) == 0;
  }

  void run() {
    nameThisThread("zelvane.watch");
    std::array<Event, 64> events{};
    while (true) {
      const int count = kevent(queue_, nullptr, 0, events.data(), events.size(), nullptr);
      if (count < 0 && errno != EINTR) return;
      bool concerned = false;
      for (int i = 0; i < count; ++i) {
        const auto& event = events[static_cast<std::size_t>(i)];
        if (event.filter == EVFILT_USER) return;
        concerned = concerns(event) || concerned;
      }
      if (concerned) changed_();
    }
  }

  /// Whether the event is about a watched folder; mends the watches after it. An event of a
  /// descriptor closed since then finds nothing, or costs another's owner one look.
  bool concerns(const Event& event) {
    const std::lock_guard lock(lock_);
    const auto fd = static_cast<int>(event.ident);
    for (auto& target : targets_) {
      if (target.descriptor.fd() == fd) return folderChanged(target, event.fflags);
      const auto file =
          std::find_if(target.files.begin(), target.files.end(),
                       [&](const auto& one) { return one.second.descriptor.fd() == fd; });
      if (file == target.files.end()) continue;
      if ((event.fflags & goneNotes) != 0) target.files.erase(file);
      return true;
    }
    return false;
  }

  bool folderChanged(Target& target, std::uint32_t notes) {
    const bool wasPresent = target.present;
    if (!wasPresent || (notes & goneNotes) != 0) {
      aim(target);
    } else {
      watchFiles(target);
    }
    return wasPresent || target.present;
  }

  /// Watches the target, or what must change for it to appear.
  void aim(Target& target) {
    target.files.clear();
    for (int attempt = 0; attempt < 8; ++attempt) {
      target.present = watchFolder(target);
      if (target.present) return;
      const auto awaited = watchAncestor(target);
      // It may have appeared between the two looks: then look again.
      std::error_code failed;
      if (!std::filesystem::exists(awaited, failed)) return;
    }
  }

  bool watchFolder(Target& target) {
    auto descriptor = EventDescriptor::folder(target.folder.string());
    struct stat status {};
    if (!watch(descriptor, folderNotes) || fstat(descriptor.fd(), &status) != 0) return false;
    target.descriptor = std::move(descriptor);
    target.identity = identityOf(status);
    watchFiles(target);
    return true;
  }

  /// Watches the nearest existing ancestor; the path below it whose appearance is awaited.
  std::filesystem::path watchAncestor(Target& target) {
    std::filesystem::path awaited = target.folder;
    for (auto folder = awaited.parent_path(); !folder.empty(); folder = folder.parent_path()) {
      auto descriptor = EventDescriptor::folder(folder.string());
      if (watch(descriptor, folderNotes)) {
        target.descriptor = std::move(descriptor);
        break;
      }
      if (folder == folder.root_path()) break;
      awaited = folder;
    }
    return awaited;
  }

  /// Follows the files that are in the folder now.
  void watchFiles(Target& target) {
    std::map<std::string, WatchedFile> files;
    for (const auto& found : filesIn(target.folder)) {
      const auto known = target.files.find(found.name);
      if (known != target.files.end() && known->second.identity == found.identity) {
        files.insert(target.files.extract(known));
        continue;
      }
      auto descriptor = EventDescriptor::file((target.folder / found.name).string());
      if (!watch(descriptor, fileNotes)) continue;
      files.emplace(found.name, WatchedFile{std::move(descriptor), found.identity});
    }
    target.files = std::move(files);
  }

  std::function<void()> changed_;
  std::mutex lock_;  ///< guards the targets
  std::vector<Target> targets_;
  int queue_;
  std::thread thread_;
};

FolderWatcher::FolderWatcher(std::vector<std::string> folders, std::function<void()> changed)
    : worker_(std::make_unique<Worker>(std::move(folders), std::move(changed))) {}

FolderWatcher::~FolderWatcher() = default;

void FolderWatcher::recheck() { worker_->recheck(); }

}  // namespace zelvane::platform
