// What a power cut may leave of a folder: files keep what was flushed, folders the names that were.
// Sterner than most file systems: of the rest any part may be there, in any order.
#pragma once

#include <memory>
#include <set>
#include <vector>

#include "tests/faults/call_faults.h"
#include "tests/faults/file_tree.h"

namespace zelvane::test {

class DiskModel {
 public:
  /// Begins with what lies in the folder now, all of it flushed long ago.
  explicit DiskModel(const std::string& folder);

  void apply(const FileCall& call);
  /// The folder as programs see it.
  FileTree seen() const;
  /// All that may lie there after a power cut at this moment.
  std::set<FileTree> survivors() const;

 private:
  struct Content {
    std::string now;  ///< as in a FileTree
    std::string flushed;
  };
  using Names = std::map<std::string, std::shared_ptr<Content>>;
  /// A change of a folder: one name goes, another comes, either may be empty.
  struct Change {
    std::string removed;
    std::string added;
    std::shared_ptr<Content> content;
  };
  /// How much of the bytes that were not flushed is there.
  enum class Unflushed { none, half, all };

  static void make(Names& names, const Change& change);
  void change(const Change& change);
  void flush(const std::string& path);
  FileTree survivor(std::size_t changes, Unflushed bytes) const;
  std::string within(const std::string& path) const;

  std::string folder_;
  Names names_;
  Names flushed_;
  std::vector<Change> changes_;  ///< not flushed yet
};

}  // namespace zelvane::test
