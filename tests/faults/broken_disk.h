// Disks that leave out what keeps notes safe: the faults must find each of them out.
#pragma once

#include <fcntl.h>
#include <memory>
#include <string>
#include <unistd.h>

#include "tests/support/hooked_notes_disk.h"

namespace zelvane::test {

enum class Missing {
  nothing,
  backupAndRename,  ///< writes over the main file in its place
  backup,
  fileFlush,
  folderFlush,
};

inline bool isBackup(const std::string& path) { return path.ends_with("notes.bak.tmp"); }

/// The file that a temporary one is to become.
inline std::string targetOf(const std::string& temporary) {
  return temporary.substr(0, temporary.rfind(".sb-"));
}

inline std::error_code writeOver(const std::string& path, std::string_view bytes, int flags) {
  const int fd = open(path.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC | flags, 0600);
  const bool well = fd >= 0 && write(fd, bytes.data(), bytes.size()) >= 0;
  if (fd >= 0) close(fd);
  return std::make_error_code(well ? std::errc() : std::errc::io_error);
}

class BrokenDisk : public HookedNotesDisk {
 public:
  explicit BrokenDisk(Missing missing)
      : HookedNotesDisk([](const auto&, const auto&) { return std::error_code(); }),
        missing_(missing) {}

  std::error_code create(const std::string& path, std::string_view bytes,
                         std::uint32_t mode) override {
    if (leavesOut(path)) return {};
    if (missing_ == Missing::fileFlush) return writeOver(path, bytes, O_EXCL);
    if (missing_ == Missing::backupAndRename) return writeOver(targetOf(path), bytes, O_TRUNC);
    return HookedNotesDisk::create(path, bytes, mode);
  }
  std::error_code rename(const std::string& from, const std::string& to) override {
    const bool left = leavesOut(from) || missing_ == Missing::backupAndRename;
    return left ? std::error_code() : HookedNotesDisk::rename(from, to);
  }
  std::error_code syncFolder(const std::string& path) override {
    return missing_ == Missing::folderFlush ? std::error_code() : HookedNotesDisk::syncFolder(path);
  }

 private:
  bool leavesOut(const std::string& path) const {
    const bool without = missing_ == Missing::backup || missing_ == Missing::backupAndRename;
    return without && isBackup(path);
  }

  Missing missing_;
};

inline std::shared_ptr<NotesDisk> diskWithout(Missing missing) {
  if (missing == Missing::nothing) return systemNotesDisk();
  return std::make_shared<BrokenDisk>(missing);
}

}  // namespace zelvane::test
