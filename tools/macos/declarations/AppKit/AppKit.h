/* What we use of AppKit. */
#pragma once
#include <Foundation/Foundation.h>

#define ZELVANE_SINCE(version) __attribute__((availability(macos, introduced = version)))

#pragma clang assume_nonnull begin
@interface NSRunningApplication : NSObject
@property(nullable, readonly, copy) NSString* bundleIdentifier;
@end

@interface NSWorkspace : NSObject
@property(class, readonly, strong) NSWorkspace* sharedWorkspace;
@property(readonly, strong) NSNotificationCenter* notificationCenter;
@property(nullable, readonly, strong) NSRunningApplication* frontmostApplication;
@property(readonly) BOOL accessibilityDisplayShouldReduceMotion;
@end
extern "C" NSNotificationName const NSWorkspaceWillPowerOffNotification;
extern "C" NSNotificationName const NSWorkspaceAccessibilityDisplayOptionsDidChangeNotification;

typedef NSString* NSAppearanceName;
extern "C" NSAppearanceName const NSAppearanceNameAqua;
extern "C" NSAppearanceName const NSAppearanceNameDarkAqua ZELVANE_SINCE(10.14);

@interface NSAppearance : NSObject
- (nullable NSAppearanceName)bestMatchFromAppearancesWithNames:(NSArray<NSAppearanceName>*)names
    ZELVANE_SINCE(10.14);
@end

typedef NSUInteger NSWindowStyleMask;
static const NSWindowStyleMask NSWindowStyleMaskResizable = 1 << 3;
static const NSWindowStyleMask NSWindowStyleMaskNonactivatingPanel = 1 << 7;

typedef NSUInteger NSWindowCollectionBehavior;
static const NSWindowCollectionBehavior NSWindowCollectionBehaviorCanJoinAllSpaces = 1 << 0;
static const NSWindowCollectionBehavior NSWindowCollectionBehaviorIgnoresCycle = 1 << 6;
static const NSWindowCollectionBehavior NSWindowCollectionBehaviorFullScreenNone = 1 << 9;

typedef NSUInteger NSWindowOcclusionState;
static const NSWindowOcclusionState NSWindowOcclusionStateVisible = 1 << 1;

typedef NSInteger NSWindowLevel;
static const NSWindowLevel NSNormalWindowLevel = 0;

@interface NSWindow : NSObject
@property NSWindowStyleMask styleMask;
@property NSWindowCollectionBehavior collectionBehavior;
@property(readonly) NSWindowOcclusionState occlusionState;
@property NSWindowLevel level;
@property BOOL hidesOnDeactivate;
@property BOOL hasShadow;
@property(getter=isMovable) BOOL movable;
@property(readonly, getter=isKeyWindow) BOOL keyWindow;
- (void)makeKeyWindow;
- (void)orderFrontRegardless;
- (void)resignKeyWindow;
@end

@interface NSPanel : NSWindow
@property(getter=isFloatingPanel) BOOL floatingPanel;
@end

@interface NSView : NSObject
@property(nullable, readonly, assign) NSWindow* window;
@end

@class NSMenu;

@interface NSMenuItem : NSObject
@property(nullable, strong) NSMenu* submenu;
@property(copy) NSString* keyEquivalent;
@end

@interface NSMenu : NSObject
@property(copy) NSArray<NSMenuItem*>* itemArray;
@end

typedef NSInteger NSApplicationActivationPolicy;
static const NSApplicationActivationPolicy NSApplicationActivationPolicyAccessory = 1;

@interface NSApplication : NSObject
@property(nullable, strong) NSMenu* mainMenu;
@property(readonly, strong) NSAppearance* effectiveAppearance ZELVANE_SINCE(10.14);
/// A method that answers whether it worked; not a property.
- (BOOL)setActivationPolicy:(NSApplicationActivationPolicy)policy;
@end
extern "C" NSApplication* _Null_unspecified NSApp;
#pragma clang assume_nonnull end
