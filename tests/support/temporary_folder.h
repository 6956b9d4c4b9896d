// A folder of a test's own, removed with everything in it at the end of its life.
#pragma once

#include <filesystem>
#include <string>

namespace zelvane::test {

class TemporaryFolder {
 public:
  TemporaryFolder();
  ~TemporaryFolder();
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;

  /// The absolute path of the folder, or of `name` in it.
  std::string path() const { return path_.string(); }
  std::string path(const std::string& name) const { return (path_ / name).string(); }
  /// Writes a file in place, making the folders that lead to it; returns its path.
  std::string write(const std::string& name, const std::string& bytes) const;
  /// The bytes of a file; empty when there is none.
  std::string read(const std::string& name) const;

 private:
  std::filesystem::path path_;
};

}  // namespace zelvane::test
