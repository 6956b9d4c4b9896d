#include "app/notes/notes_disk.h"

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <filesystem>
#include <new>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/file_sync.h"

#include "core/file_lock.h"
#include "core/json_file.h"

namespace zelvane {
namespace {

namespace fs = std::filesystem;

std::error_code lastError() { return {errno, std::generic_category()}; }

std::error_code writeAll(int fd, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t count = write(fd, bytes.data(), bytes.size());
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) return lastError();
    if (count == 0) return std::make_error_code(std::errc::io_error);
    bytes.remove_prefix(static_cast<std::size_t>(count));
  }
  return {};
}

/// Writes, flushes and closes; the first error of the three.
std::error_code finish(int fd, std::string_view bytes) {
  auto failed = writeAll(fd, bytes);
  if (!failed) failed = platform::syncFile(fd);
  // An interrupted close has closed all the same.
  if (close(fd) != 0 && errno != EINTR && !failed) failed = lastError();
  return failed;
}

/// Whether the file ends in the middle of a line, as after a disk that ran full.
bool endsOpen(int fd) {
  const off_t size = lseek(fd, 0, SEEK_END);
  char last = '\n';
  return size > 0 && pread(fd, &last, 1, size - 1) == 1 && last != '\n';
}

class SystemDisk : public NotesDisk {
 public:
  bool exists(const std::string& path) const override {
    struct stat info {};
    return lstat(path.c_str(), &info) == 0 || (errno != ENOENT && errno != ENOTDIR);
  }

  std::optional<FileIdentity> identity(const std::string& path) const override {
    return fileIdentity(path);
  }

  std::string resolved(const std::string& path) const override {
    std::error_code failed;
    const auto target = fs::canonical(path, failed);
    return failed ? path : target.string();
  }

  std::optional<std::string> read(const std::string& path) const override {
    try {
      return readFile(path, largestNotesFile);
    } catch (const std::bad_alloc&) {
      return std::nullopt;
    }
  }

  std::vector<std::string> list(const std::string& folder) const override {
    std::vector<std::string> names;
    std::error_code failed;
    for (fs::directory_iterator entry(folder, failed), end; !failed && entry != end;
         entry.increment(failed)) {
      names.push_back(entry->path().filename().string());
    }
    return names;
  }

  std::error_code makeFolders(const std::string& path) override {
    if (mkdir(path.c_str(), 0700) == 0) return syncFolder(parentOf(path));
    if (errno == EEXIST) {
      std::error_code failed;
      return fs::is_directory(path, failed) ? std::error_code{}
                                            : std::make_error_code(std::errc::not_a_directory);
    }
    const auto parent = parentOf(path);
    if (errno != ENOENT || parent == path) return lastError();
    if (const auto failed = makeFolders(parent)) return failed;
    return mkdir(path.c_str(), 0700) == 0 || errno == EEXIST ? syncFolder(parent) : lastError();
  }

  std::error_code create(const std::string& path, std::string_view bytes,
                         std::uint32_t mode) override {
    const int fd =
        open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, mode & 0777);
    if (fd < 0) return lastError();
    // The mask of the process narrows what a file that is already there was given.
    (void)!fchmod(fd, mode & 0777);
    return finish(fd, bytes);
  }

  std::error_code appendLines(const std::string& path, std::string_view bytes) override {
    // Never waits for the other end of a pipe that somebody put in the place.
    const int flags = O_RDWR | O_APPEND | O_CREAT | O_NONBLOCK | O_CLOEXEC;
    const int fd = open(path.c_str(), flags, 0600);
    if (fd < 0) return lastError();
    struct stat info {};
    if (fstat(fd, &info) != 0 || !S_ISREG(info.st_mode)) {
      close(fd);
      return std::make_error_code(std::errc::no_such_device_or_address);
    }
    // Of two that append at once one could see half of the other's line, and take it for cut off.
    // One that hangs is not waited for longer.
    const FileLock::Scope turn(path, Seconds(1));
    return finish(fd, endsOpen(fd) ? '\n' + std::string(bytes) : std::string(bytes));
  }

  std::error_code rename(const std::string& from, const std::string& to) override {
    return std::rename(from.c_str(), to.c_str()) == 0 ? std::error_code{} : lastError();
  }

  std::error_code remove(const std::string& path) override {
    return unlink(path.c_str()) == 0 ? std::error_code{} : lastError();
  }

  std::error_code syncFolder(const std::string& path) override {
    return platform::syncFolder(path);
  }

 private:
  static std::string parentOf(const std::string& path) {
    const auto parent = fs::path(path).parent_path().string();
    return parent.empty() ? "." : parent;
  }
};

}  // namespace

std::shared_ptr<NotesDisk> systemNotesDisk() { return std::make_shared<SystemDisk>(); }

}  // namespace zelvane
