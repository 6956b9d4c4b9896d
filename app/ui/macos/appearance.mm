#include "app/ui/appearance.h"

#import <AppKit/AppKit.h>
#include <utility>

namespace {

NSString* const appearanceKey = @"effectiveAppearance";

}  // namespace

/// Calls a block whenever the application's appearance changes, until it is told to stop.
@interface ZelvaneAppearanceObserver : NSObject
- (instancetype)initWithBlock:(void (^)(void))changed;
- (void)stop;
@end

@implementation ZelvaneAppearanceObserver {
  void (^_changed)(void);
}

- (instancetype)initWithBlock:(void (^)(void))changed {
  self = [super init];
  if (self) {
    _changed = [changed copy];
    [NSApp addObserver:self forKeyPath:appearanceKey options:0 context:nullptr];
  }
  return self;
}

- (void)stop {
  [NSApp removeObserver:self forKeyPath:appearanceKey];
}

- (void)observeValueForKeyPath:(NSString*)keyPath
                      ofObject:(id)object
                        change:(NSDictionary<NSString*, id>*)change
                       context:(void*)context {
  (void)keyPath, (void)object, (void)change, (void)context;
  _changed();
}
@end

namespace zelvane {

/// Asks AppKit, and again whenever it says that something changed.
class Appearance::Watch {
 public:
  explicit Watch(std::function<void(Wishes)> changed)
      : changed_(std::move(changed)), wishes_(asked()) {
    observer_ = [[ZelvaneAppearanceObserver alloc] initWithBlock:^{
      decide();
    }];
    options_ = [NSWorkspace.sharedWorkspace.notificationCenter
        addObserverForName:NSWorkspaceAccessibilityDisplayOptionsDidChangeNotification
                    object:nil
                     queue:nil
                usingBlock:^(NSNotification*) {
                  decide();
                }];
  }

  ~Watch() {
    [observer_ stop];
    [NSWorkspace.sharedWorkspace.notificationCenter removeObserver:options_];
  }

  Wishes wishes() const { return wishes_; }

 private:
  static Wishes asked() {
    NSAppearanceName best = [NSApp.effectiveAppearance
        bestMatchFromAppearancesWithNames:@[ NSAppearanceNameAqua, NSAppearanceNameDarkAqua ]];
    return {
        .dark = [best isEqualToString:NSAppearanceNameDarkAqua] == YES,
        .reducedMotion = NSWorkspace.sharedWorkspace.accessibilityDisplayShouldReduceMotion == YES};
  }

  void decide() {
    const auto wishes = asked();
    if (std::exchange(wishes_, wishes) != wishes) changed_(wishes);
  }

  std::function<void(Wishes)> changed_;
  Wishes wishes_;
  ZelvaneAppearanceObserver* observer_;
  id options_;
};

Appearance::Appearance(std::function<void(Wishes)> changed)
    : watch_(std::make_unique<Watch>(std::move(changed))) {}

Appearance::~Appearance() = default;

Appearance::Wishes Appearance::wishes() const { return watch_->wishes(); }

}  // namespace zelvane
