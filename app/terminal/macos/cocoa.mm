#include "app/terminal/macos/cocoa.h"

#import <AppKit/AppKit.h>
#include <dlfcn.h>
#include <objc/runtime.h>

namespace zelvane {
namespace {

/// A class of the kit's, by its name: naming it in the code would link the kit.
Class kitClass(const char* name) {
  static void* const kit = dlopen("/System/Library/Frameworks/AppKit.framework/AppKit", RTLD_LAZY);
  return kit ? objc_getClass(name) : nil;
}

}  // namespace

std::string frontApplication() {
  @autoreleasepool {
    NSWorkspace* workspace = [kitClass("NSWorkspace") sharedWorkspace];
    const char* bundle = workspace.frontmostApplication.bundleIdentifier.UTF8String;
    return bundle ? bundle : "";
  }
}

bool runAppleScript(const std::string& source) {
  @autoreleasepool {
    NSString* text = [kitClass("NSString") stringWithUTF8String:source.c_str()];
    if (!text) return false;
    NSAppleScript* script = [[kitClass("NSAppleScript") alloc] initWithSource:text];
    NSDictionary<NSString*, id>* failure = nil;
    return script && [script executeAndReturnError:&failure] != nil;
  }
}

}  // namespace zelvane
