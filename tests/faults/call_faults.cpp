#include "tests/faults/call_faults.h"

#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdarg>
#include <cstdlib>
#include <dirent.h>
#include <dlfcn.h>
#include <fcntl.h>
#include <map>
#include <mutex>
#include <sys/file.h>
#include <sys/sendfile.h>
#include <sys/stat.h>
#include <unistd.h>

namespace zelvane::test {
namespace {

using Kind = CallFault::Kind;

struct Watch {
  std::mutex lock;  ///< guards what follows
  std::string folder;
  CallFault fault;
  std::function<void(std::size_t)> before;
  std::vector<FileCall> calls;
  std::map<int, std::string> openFiles;
};

// Set apart, because other libraries make calls before this program has begun.
std::atomic<bool> watching = false;

Watch& watch() {
  static Watch instance;
  return instance;
}

enum class Fate { unwatched, run, half, halfAndDie, fail };

[[noreturn]] void die() {
  kill(getpid(), SIGKILL);
  while (true) pause();
}

Fate fateOf(const CallFault& fault, std::size_t number, bool writes) {
  if (number < fault.call || fault.kind == Kind::none) return Fate::run;
  if (number > fault.call) return fault.kind == Kind::failFromHere ? Fate::fail : Fate::run;
  if (fault.kind == Kind::killBefore) die();
  if (fault.kind == Kind::killHalfway) return Fate::halfAndDie;
  if (fault.kind == Kind::shorten || (fault.kind == Kind::failFromHere && writes)) {
    return Fate::half;
  }
  return Fate::fail;
}

Fate begin(const FileCall& call) {
  if (!watching) return Fate::unwatched;
  Watch& now = watch();
  if (!call.path.starts_with(now.folder)) return Fate::unwatched;
  if (now.before) {
    watching = false;
    now.before(now.calls.size());
    watching = true;
  }
  const std::lock_guard lock(now.lock);
  now.calls.push_back(call);
  const Fate fate = fateOf(now.fault, now.calls.size() - 1, call.name == "write");
  if (fate == Fate::fail) errno = now.fault.error;
  return fate;
}

/// Notes the outcome of the watched call that ran last: notes are written by one thread at a time.
void end(bool succeeded) {
  const std::lock_guard lock(watch().lock);
  watch().calls.back().succeeded = succeeded;
}

template <typename Result>
Result failure() {
  if constexpr (std::is_pointer_v<Result>)
    return nullptr;
  else
    return -1;
}

template <typename Run>
auto faulty(const FileCall& call, Run run) -> decltype(run()) {
  using Result = decltype(run());
  const Fate fate = begin(call);
  if (fate == Fate::fail) return failure<Result>();
  const Result result = run();
  if (fate != Fate::unwatched) end(result != failure<Result>());
  return result;
}

std::string pathOf(int fd) {
  if (!watching) return "";
  const std::lock_guard lock(watch().lock);
  const auto found = watch().openFiles.find(fd);
  return found == watch().openFiles.end() ? "" : found->second;
}

template <typename Run>
int opened(const FileCall& call, Run run) {
  const int fd = faulty(call, run);
  if (fd < 0 || !watching) return fd;
  const std::lock_guard lock(watch().lock);
  watch().openFiles[fd] = call.path;
  return fd;
}

void forget(int fd) {
  if (!watching) return;
  const std::lock_guard lock(watch().lock);
  watch().openFiles.erase(fd);
}

}  // namespace

void watchCalls(const std::string& folder, const CallFault& fault,
                std::function<void(std::size_t)> before) {
  watch().folder = folder;
  watch().fault = fault;
  watch().before = std::move(before);
  watch().calls.clear();
  watch().openFiles.clear();
  watching = true;
}

std::vector<FileCall> stopWatching() {
  watching = false;
  const auto& fault = watch().fault;
  if (fault.kind == Kind::killBefore && fault.call == watch().calls.size()) die();
  return watch().calls;
}

}  // namespace zelvane::test

using namespace zelvane::test;

// NOLINTBEGIN: these are the C library's names, with its declarations
/// The function that the program would have called.
#define NEXT(name) reinterpret_cast<decltype(&::name)>(dlsym(RTLD_NEXT, #name))

#define TAKE_OVER(result, name, parameters, arguments, path, ...) \
  result name parameters __VA_ARGS__ {                            \
    static const auto next = NEXT(name);                          \
    return faulty({#name, path}, [&] { return next arguments; }); \
  }

extern "C" {

TAKE_OVER(int, stat, (const char* path, struct stat* info), (path, info), path, noexcept)
TAKE_OVER(int, lstat, (const char* path, struct stat* info), (path, info), path, noexcept)
TAKE_OVER(int, fstat, (int fd, struct stat* info), (fd, info), pathOf(fd), noexcept)
TAKE_OVER(int, access, (const char* path, int mode), (path, mode), path, noexcept)
TAKE_OVER(char*, realpath, (const char* path, char* to), (path, to), path, noexcept)
TAKE_OVER(ssize_t, read, (int fd, void* to, size_t size), (fd, to, size), pathOf(fd))
TAKE_OVER(ssize_t, pread, (int fd, void* to, size_t size, off_t at), (fd, to, size, at), pathOf(fd))
TAKE_OVER(off_t, lseek, (int fd, off_t at, int from), (fd, at, from), pathOf(fd), noexcept)
TAKE_OVER(ssize_t, sendfile, (int to, int from, off_t* at, size_t size), (to, from, at, size),
          pathOf(to), noexcept)
TAKE_OVER(DIR*, opendir, (const char* path), (path), path)
TAKE_OVER(DIR*, fdopendir, (int fd), (fd), pathOf(fd))
TAKE_OVER(dirent*, readdir, (DIR * folder), (folder), pathOf(dirfd(folder)))
TAKE_OVER(int, mkdir, (const char* path, mode_t mode), (path, mode), path, noexcept)
TAKE_OVER(int, unlink, (const char* path), (path), path, noexcept)
TAKE_OVER(int, rmdir, (const char* path), (path), path, noexcept)
TAKE_OVER(int, link, (const char* path, const char* to), (path, to), path, noexcept)
TAKE_OVER(int, chmod, (const char* path, mode_t mode), (path, mode), path, noexcept)
TAKE_OVER(int, fchmod, (int fd, mode_t mode), (fd, mode), pathOf(fd), noexcept)
TAKE_OVER(int, flock, (int fd, int operation), (fd, operation), pathOf(fd), noexcept)
TAKE_OVER(int, fsync, (int fd), (fd), pathOf(fd))

int open(const char* path, int flags, ...) {
  static const auto next = NEXT(open);
  va_list rest;
  va_start(rest, flags);
  const mode_t mode = flags & O_CREAT ? va_arg(rest, mode_t) : 0;
  va_end(rest);
  return opened({.name = "open", .path = path, .flags = flags},
                [&] { return next(path, flags, mode); });
}

int openat(int folder, const char* path, int flags, ...) {
  static const auto next = NEXT(openat);
  va_list rest;
  va_start(rest, flags);
  const mode_t mode = flags & O_CREAT ? va_arg(rest, mode_t) : 0;
  va_end(rest);
  return opened({.name = "open", .path = path, .flags = flags},
                [&] { return next(folder, path, flags, mode); });
}

ssize_t write(int fd, const void* bytes, size_t size) {
  static const auto next = NEXT(write);
  FileCall call{.name = "write", .path = pathOf(fd)};
  if (!call.path.empty()) call.bytes.assign(static_cast<const char*>(bytes), size);
  const Fate fate = begin(call);
  if (fate == Fate::fail) return -1;
  const bool half = fate == Fate::half || fate == Fate::halfAndDie;
  const ssize_t count = next(fd, bytes, half ? size / 2 : size);
  if (fate == Fate::halfAndDie) die();
  if (fate != Fate::unwatched) end(count == static_cast<ssize_t>(size));
  return count;
}

int rename(const char* from, const char* to) noexcept {
  static const auto next = NEXT(rename);
  return faulty({"rename", from, to}, [&] { return next(from, to); });
}

int renameat2(int folder, const char* from, int toFolder, const char* to,
              unsigned int flags) noexcept {
  static const auto next = NEXT(renameat2);
  return faulty({"renameat2", from, to}, [&] { return next(folder, from, toFolder, to, flags); });
}

int close(int fd) {
  static const auto next = NEXT(close);
  const Fate fate = begin({"close", pathOf(fd)});
  const int error = errno;
  forget(fd);
  const int result = next(fd);  // a close that fails has closed all the same
  if (fate == Fate::run) end(result == 0);
  if (fate != Fate::fail) return result;
  errno = error;
  return -1;
}

int closedir(DIR* folder) {
  static const auto next = NEXT(closedir);
  forget(dirfd(folder));
  return next(folder);
}
}
// NOLINTEND
