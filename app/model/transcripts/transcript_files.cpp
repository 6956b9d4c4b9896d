#include "app/model/transcripts/transcript_files.h"

#include <cerrno>
#include <fcntl.h>
#include <filesystem>
#include <sys/stat.h>
#include <unistd.h>

namespace zelvane {
namespace {

namespace fs = std::filesystem;

std::optional<std::uint64_t> regularSize(const struct stat& info) {
  if (!S_ISREG(info.st_mode) || info.st_size < 0) return std::nullopt;
  return static_cast<std::uint64_t>(info.st_size);
}

std::optional<std::size_t> readAt(int fd, std::uint64_t offset, char* into, std::size_t most) {
  std::size_t filled = 0;
  while (filled < most) {
    const ssize_t count =
        pread(fd, into + filled, most - filled, static_cast<off_t>(offset + filled));
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) return std::nullopt;
    if (count == 0) break;
    filled += static_cast<std::size_t>(count);
  }
  return filled;
}

class SystemTranscriptFiles : public TranscriptFiles {
 public:
  std::vector<std::string> entries(const std::string& folder) const override {
    std::vector<std::string> names;
    std::error_code failed;
    for (auto entry = fs::directory_iterator(folder, failed); !failed && entry != fs::end(entry);
         entry.increment(failed)) {
      names.push_back(entry->path().filename().string());
    }
    return names;
  }

  std::optional<std::uint64_t> size(const std::string& path) const override {
    struct stat info {};
    return stat(path.c_str(), &info) == 0 ? regularSize(info) : std::nullopt;
  }

  std::optional<std::size_t> read(const std::string& path, std::uint64_t offset, char* into,
                                  std::size_t most) const override {
    // Without waiting: what was a file a moment ago may be a pipe now.
    const int fd = open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
    if (fd < 0) return std::nullopt;
    struct stat info {};
    const bool regular = fstat(fd, &info) == 0 && regularSize(info);
    const auto count = regular ? readAt(fd, offset, into, most) : std::nullopt;
    close(fd);
    return count;
  }
};

}  // namespace

std::shared_ptr<const TranscriptFiles> systemTranscriptFiles() {
  return std::make_shared<SystemTranscriptFiles>();
}

}  // namespace zelvane
