#include "core/installer/file_placing.h"

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <filesystem>
#include <optional>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/file_exchange.h"
#include "platform/file_sync.h"

#include "core/file_writing.h"
#include "core/json_file.h"

namespace zelvane {
namespace {

Placed tooLate(const std::string& file) {
  unlink(file.c_str());
  return Placed::tooLate;
}

Placed refused(const std::string& file) {
  unlink(file.c_str());
  return Placed::refused;
}

/// As well as can be on a disk that cannot exchange files: a moment between look and rename stays.
Placed renameOver(const std::string& file, const std::string& target, std::string_view old) {
  if (readFile(target, JSONFile::defaultLimit) != old) return tooLate(file);
  return std::rename(file.c_str(), target.c_str()) == 0 ? Placed::yes : refused(file);
}

/// The last resort for somebody else's file that was exchanged out and cannot be exchanged in.
Placed putBack(const std::string& file, const std::string& target) {
  return std::rename(file.c_str(), target.c_str()) == 0 ? Placed::tooLate : Placed::stuck;
}

}  // namespace

bool mayExist(const std::string& path) {
  if (access(path.c_str(), F_OK) == 0) return true;
  return errno != ENOENT && errno != ENOTDIR && errno != ELOOP;
}

bool createPrivate(const std::string& path, std::string_view data, std::uint32_t mode) {
  const int fd = open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600);
  if (fd < 0) return false;
  bool whole =
      fchmod(fd, static_cast<mode_t>(mode)) == 0 && writeAll(fd, data) && !platform::syncFile(fd);
  if (close(fd) != 0) whole = false;
  if (!whole) unlink(path.c_str());
  return whole;
}

Placed placeNew(const std::string& file, const std::string& target) {
  // A rename would replace what has just appeared there.
  std::error_code failed;
  std::filesystem::create_hard_link(file, target, failed);
  if (!failed) {
    unlink(file.c_str());
    return Placed::yes;
  }
  // There are disks without hard links, and some of them cannot do the next thing either.
  if (failed != std::errc::file_exists) failed = platform::moveToFreeName(file, target);
  if (!failed) return Placed::yes;
  if (failed == std::errc::file_exists || mayExist(target)) return tooLate(file);
  return std::rename(file.c_str(), target.c_str()) == 0 ? Placed::yes : refused(file);
}

Placed placeOver(const std::string& file, std::string_view bytes, const std::string& target,
                 std::string_view old) {
  // What comes out must be what went in before. If it is not, somebody wrote meanwhile, and what
  // came out goes back in; now that must push out ours, or somebody wrote once more.
  constexpr int mostExchanges = 16;
  std::string in(bytes);
  std::optional<std::string> expected(old);
  for (int i = 0; i < mostExchanges; ++i) {
    if (const auto failed = platform::exchangeFiles(file, target)) {
      if (i > 0) return putBack(file, target);
      if (failed == std::errc::no_such_file_or_directory) return tooLate(file);
      // Systems and disks that cannot exchange say so in many ways.
      return renameOver(file, target, old);
    }
    auto out = readFile(file, JSONFile::defaultLimit);
    if (out == expected) {
      unlink(file.c_str());
      return in == bytes ? Placed::yes : Placed::tooLate;
    }
    expected = std::exchange(in, std::move(out).value_or(""));
  }
  return putBack(file, target);
}

}  // namespace zelvane
