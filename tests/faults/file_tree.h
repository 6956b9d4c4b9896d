// A folder with all that lies in it, as a value.
#pragma once

#include <map>
#include <string>

namespace zelvane::test {

/// By path within the folder: a letter and what belongs to it. 'F' and the bytes of a file, 'D' for
/// a folder, 'L' and the target of a link.
using FileTree = std::map<std::string, std::string>;

FileTree readTree(const std::string& folder);
/// Makes all of it in the folder, which is made too.
void writeTree(const std::string& folder, const FileTree& tree);

}  // namespace zelvane::test
