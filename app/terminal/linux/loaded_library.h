// A shared library that is loaded when it is first needed. Programs that start often are linked
// with these sources, too, and looking libraries up at their start would cost more than they do.
#pragma once

#include <dlfcn.h>

namespace zelvane {

/// Stays loaded to the end of the process: what is in use in it nobody counts.
class LoadedLibrary {
 public:
  explicit LoadedLibrary(const char* name) : handle_(dlopen(name, RTLD_NOW | RTLD_LOCAL)) {}

  bool isWhole() const { return handle_ && !incomplete_; }
  template <typename Function>
  void find(const char* name, Function*& function) {
    function = handle_ ? reinterpret_cast<Function*>(dlsym(handle_, name)) : nullptr;
    if (!function) incomplete_ = true;
  }

 private:
  void* handle_;
  bool incomplete_ = false;
};

}  // namespace zelvane
