// The system's disk for notes, with a hook that sees every call first and may let it fail.
#pragma once

#include <functional>
#include <string>

#include "app/notes/notes_disk.h"

namespace zelvane::test {

class HookedNotesDisk : public NotesDisk {
 public:
  /// Called with the name of each call and its path; an error is what the call then returns,
  /// without doing anything. Set before the disk is used; called on the caller's thread.
  using Hook = std::function<std::error_code(const std::string& call, const std::string& path)>;
  explicit HookedNotesDisk(Hook hook) : hook_(std::move(hook)) {}

  bool exists(const std::string& path) const override {
    return hook_("exists", path) || disk_->exists(path);
  }
  std::optional<FileIdentity> identity(const std::string& path) const override {
    return hook_("identity", path) ? std::nullopt : disk_->identity(path);
  }
  std::string resolved(const std::string& path) const override {
    return hook_("resolved", path) ? path : disk_->resolved(path);
  }
  std::optional<std::string> read(const std::string& path) const override {
    return hook_("read", path) ? std::nullopt : disk_->read(path);
  }
  std::vector<std::string> list(const std::string& folder) const override {
    return hook_("list", folder) ? std::vector<std::string>() : disk_->list(folder);
  }
  std::error_code makeFolders(const std::string& path) override {
    const auto failed = hook_("makeFolders", path);
    return failed ? failed : disk_->makeFolders(path);
  }
  std::error_code create(const std::string& path, std::string_view bytes,
                         std::uint32_t mode) override {
    // What a disk that runs full does: half of the file is there.
    const auto failed = hook_("create", path);
    const auto result =
        disk_->create(path, bytes.substr(0, failed ? bytes.size() / 2 : bytes.npos), mode);
    return failed ? failed : result;
  }
  std::error_code appendLines(const std::string& path, std::string_view bytes) override {
    const auto failed = hook_("appendLines", path);
    const auto result =
        disk_->appendLines(path, bytes.substr(0, failed ? bytes.size() / 2 : bytes.npos));
    return failed ? failed : result;
  }
  std::error_code rename(const std::string& from, const std::string& to) override {
    const auto failed = hook_("rename", to);
    return failed ? failed : disk_->rename(from, to);
  }
  std::error_code remove(const std::string& path) override {
    const auto failed = hook_("remove", path);
    return failed ? failed : disk_->remove(path);
  }
  std::error_code syncFolder(const std::string& path) override {
    const auto failed = hook_("syncFolder", path);
    return failed ? failed : disk_->syncFolder(path);
  }

 private:
  Hook hook_;
  std::shared_ptr<NotesDisk> disk_ = systemNotesDisk();
};

}  // namespace zelvane::test
