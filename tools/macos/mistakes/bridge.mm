// refused: requires a bridged cast
#import <AppKit/AppKit.h>
NSView* unbridged(void* window) { return (NSView*)window; }
