// The system's Objective-C kits, loaded when first needed, not linked: the command is also the hook
// helper, which must start at once. Objective-C++ only; any thread.
#pragma once

#import <Foundation/Foundation.h>
#include <string>

namespace zelvane::platform {

/// A class of Foundation, by its name: naming it in the code would link the kit.
Class foundationClass(const char* name);

/// The same for AppKit.
Class appKitClass(const char* name);

/// The text as the kits take it; nil when it is not UTF-8.
NSString* kitText(const std::string& text);

/// The text as we take it; empty for nil.
std::string plainText(NSString* text);

}  // namespace zelvane::platform
