#include "app/terminal/macos/cocoa.h"

#import <AppKit/AppKit.h>

#include "platform/macos/kits.h"

namespace zelvane {

std::string frontApplication() {
  @autoreleasepool {
    NSWorkspace* workspace = [platform::appKitClass("NSWorkspace") sharedWorkspace];
    return platform::plainText(workspace.frontmostApplication.bundleIdentifier);
  }
}

bool runAppleScript(const std::string& source) {
  @autoreleasepool {
    NSString* text = platform::kitText(source);
    if (!text) return false;
    NSAppleScript* script =
        [[platform::foundationClass("NSAppleScript") alloc] initWithSource:text];
    NSDictionary<NSString*, id>* failure = nil;
    return script && [script executeAndReturnError:&failure] != nil;
  }
}

}  // namespace zelvane
