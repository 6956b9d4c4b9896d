#include "platform/macos/kits.h"

#include <dlfcn.h>
#include <objc/runtime.h>

namespace zelvane::platform {

Class foundationClass(const char* name) {
  static void* const kit =
      dlopen("/System/Library/Frameworks/Foundation.framework/Foundation", RTLD_LAZY);
  return kit ? objc_getClass(name) : nil;
}

Class appKitClass(const char* name) {
  static void* const kit = dlopen("/System/Library/Frameworks/AppKit.framework/AppKit", RTLD_LAZY);
  return kit ? objc_getClass(name) : nil;
}

NSString* kitText(const std::string& text) {
  return [foundationClass("NSString") stringWithUTF8String:text.c_str()];
}

std::string plainText(NSString* text) {
  const char* bytes = text.UTF8String;
  return bytes ? bytes : "";
}

}  // namespace zelvane::platform
