#include "tests/faults/file_tree.h"

#include <filesystem>
#include <fstream>
#include <iterator>

namespace zelvane::test {

namespace fs = std::filesystem;

FileTree readTree(const std::string& folder) {
  FileTree tree;
  for (const auto& entry : fs::recursive_directory_iterator(folder)) {
    auto& content = tree[entry.path().lexically_relative(folder).string()];
    if (entry.is_symlink()) {
      content = 'L' + fs::read_symlink(entry.path()).string();
    } else if (entry.is_directory()) {
      content = 'D';
    } else {
      std::ifstream file(entry.path(), std::ios::binary);
      content = 'F' + std::string(std::istreambuf_iterator<char>(file), {});
    }
  }
  return tree;
}

void writeTree(const std::string& folder, const FileTree& tree) {
  fs::create_directories(folder);
  for (const auto& [name, content] : tree) {
    const auto path = fs::path(folder) / name;
    fs::create_directories(path.parent_path());
    if (content[0] == 'L') fs::create_symlink(content.substr(1), path);
    if (content[0] == 'D') fs::create_directories(path);
    if (content[0] == 'F') std::ofstream(path, std::ios::binary) << content.substr(1);
  }
}

}  // namespace zelvane::test
