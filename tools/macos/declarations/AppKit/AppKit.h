/* What we use of AppKit, with the version it came with where that is later than 10.13. */
#pragma once
#include <Foundation/Foundation.h>

#pragma clang assume_nonnull begin
@interface NSRunningApplication : NSObject
@property(nullable, readonly, copy) NSString* bundleIdentifier;
@property(readonly) pid_t processIdentifier;
@end

@interface NSWorkspace : NSObject
@property(class, readonly, strong) NSWorkspace* sharedWorkspace;
@property(nullable, readonly, strong) NSRunningApplication* frontmostApplication;
@end

typedef NSUInteger NSWindowStyleMask;
static const NSWindowStyleMask NSWindowStyleMaskNonactivatingPanel = 1 << 7;

typedef NSUInteger NSWindowCollectionBehavior;
static const NSWindowCollectionBehavior NSWindowCollectionBehaviorCanJoinAllSpaces = 1 << 0;
static const NSWindowCollectionBehavior NSWindowCollectionBehaviorIgnoresCycle = 1 << 6;
static const NSWindowCollectionBehavior NSWindowCollectionBehaviorFullScreenNone = 1 << 9;
static const NSWindowCollectionBehavior NSWindowCollectionBehaviorCanJoinAllApplications
    __attribute__((availability(macos, introduced = 13.0))) = 1 << 18;

typedef NSUInteger NSWindowOcclusionState;
static const NSWindowOcclusionState NSWindowOcclusionStateVisible = 1 << 1;

typedef NSInteger NSWindowLevel;
extern "C" const NSWindowLevel NSNormalWindowLevel;

@interface NSWindow : NSObject
@property NSWindowStyleMask styleMask;
@property NSWindowCollectionBehavior collectionBehavior;
@property(readonly) NSWindowOcclusionState occlusionState;
@property NSWindowLevel level;
@property BOOL hidesOnDeactivate;
@property BOOL hasShadow;
@property(getter=isMovable) BOOL movable;
@end

@interface NSPanel : NSWindow
@property(getter=isFloatingPanel) BOOL floatingPanel;
@property BOOL becomesKeyOnlyIfNeeded;
@end

@interface NSView : NSObject
@property(nullable, readonly, assign) NSWindow* window;
@property(readonly) BOOL isHidden;
@end
#pragma clang assume_nonnull end
