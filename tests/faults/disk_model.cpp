#include "tests/faults/disk_model.h"

#include <fcntl.h>

namespace zelvane::test {
namespace {

std::string parentOf(const std::string& path) {
  const auto slash = path.rfind('/');
  return slash == path.npos ? "" : path.substr(0, slash);
}

}  // namespace

DiskModel::DiskModel(const std::string& folder) : folder_(folder) {
  for (const auto& [name, content] : readTree(folder)) {
    names_[name] = std::make_shared<Content>(Content{content, content});
  }
  flushed_ = names_;
}

std::string DiskModel::within(const std::string& path) const {
  return path.size() <= folder_.size() ? "" : path.substr(folder_.size() + 1);
}

void DiskModel::make(Names& names, const Change& change) {
  names.erase(change.removed);
  if (!change.added.empty()) names[change.added] = change.content;
}

void DiskModel::change(const Change& change) {
  make(names_, change);
  changes_.push_back(change);
}

void DiskModel::apply(const FileCall& call) {
  if (!call.succeeded) return;
  const auto path = within(call.path);
  if (call.name == "open" && (call.flags & O_CREAT) && !names_.contains(path)) {
    change({"", path, std::make_shared<Content>(Content{"F", "F"})});
  }
  if (call.name == "open" && (call.flags & O_TRUNC)) names_[path]->now = "F";
  if (call.name == "mkdir") change({"", path, std::make_shared<Content>(Content{"D", "D"})});
  if (call.name == "write") names_[path]->now += call.bytes;
  if (call.name == "rename") change({path, within(call.to), names_[path]});
  if (call.name == "unlink") change({path, "", nullptr});
  if (call.name == "fsync") flush(path);
}

void DiskModel::flush(const std::string& path) {
  if (!path.empty() && names_[path]->now[0] == 'F') {
    names_[path]->flushed = names_[path]->now;
    return;
  }
  std::vector<Change> others;
  for (const auto& change : changes_) {
    const bool here = parentOf(change.added.empty() ? change.removed : change.added) == path;
    here ? make(flushed_, change) : others.push_back(change);
  }
  changes_ = others;
}

FileTree DiskModel::seen() const {
  FileTree tree;
  for (const auto& [name, content] : names_) tree[name] = content->now;
  return tree;
}

/// Bit by bit, `changes` tells which of the changes that were not flushed are there.
FileTree DiskModel::survivor(std::size_t changes, Unflushed bytes) const {
  Names names = flushed_;
  for (std::size_t i = 0; i < changes_.size(); ++i) {
    if (changes >> i & 1) make(names, changes_[i]);
  }
  FileTree tree;
  for (const auto& [name, content] : names) {
    const auto parent = parentOf(name);
    if (!parent.empty() && !tree.contains(parent)) continue;  // its folder is gone with all in it
    const auto& [now, flushed] = *content;
    const auto safe = now.starts_with(flushed) ? flushed.size() : 1;
    tree[name] = bytes == Unflushed::all    ? now
                 : bytes == Unflushed::none ? flushed
                                            : now.substr(0, (safe + now.size() + 1) / 2);
  }
  return tree;
}

std::set<FileTree> DiskModel::survivors() const {
  std::set<FileTree> all;
  for (std::size_t changes = 0; changes < std::size_t{1} << changes_.size(); ++changes) {
    for (const auto bytes : {Unflushed::none, Unflushed::half, Unflushed::all}) {
      all.insert(survivor(changes, bytes));
    }
  }
  return all;
}

}  // namespace zelvane::test
