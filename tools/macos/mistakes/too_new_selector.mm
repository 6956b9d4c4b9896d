// refused: 'zoomInCursor' is only available on macOS 15.0 or newer
#import <AppKit/AppKit.h>
@interface NSCursor : NSObject
@property(class, readonly, strong) NSCursor* zoomInCursor
    __attribute__((availability(macos, introduced = 15.0)));
@end
NSCursor* tooNew() { return NSCursor.zoomInCursor; }
