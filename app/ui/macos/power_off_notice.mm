#include "app/ui/power_off_notice.h"

#import <AppKit/AppKit.h>

namespace zelvane {

struct PowerOffNotice::Listener {
  id registration;
};

// Nobody tells that a shutdown was called off: then the machine counts as going down to the end.
PowerOffNotice::PowerOffNotice(std::function<void(bool goingDown)> changed)
    : listener_(std::make_shared<Listener>()) {
  listener_->registration = [NSWorkspace.sharedWorkspace.notificationCenter
      addObserverForName:NSWorkspaceWillPowerOffNotification
                  object:nil
                   queue:nil
              usingBlock:^(NSNotification*) {
                changed(true);
              }];
}

PowerOffNotice::~PowerOffNotice() {
  [NSWorkspace.sharedWorkspace.notificationCenter removeObserver:listener_->registration];
}

// It is posted when the user logs out, too.
bool PowerOffNotice::comesAlways() { return true; }

}  // namespace zelvane
