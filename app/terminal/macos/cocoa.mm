#include "app/terminal/macos/cocoa.h"

#import <AppKit/AppKit.h>
#include <mutex>

#include "platform/macos/kits.h"

namespace zelvane {

std::optional<std::string> frontApplication() {
  @autoreleasepool {
    NSRunLoop* events = [platform::foundationClass("NSRunLoop") mainRunLoop];
    if (!events.currentMode) return std::nullopt;
    NSWorkspace* workspace = [platform::appKitClass("NSWorkspace") sharedWorkspace];
    return platform::plainText(workspace.frontmostApplication.bundleIdentifier);
  }
}

bool runAppleScript(const std::string& source) {
  static std::mutex oneAtATime;
  const std::lock_guard alone(oneAtATime);
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
