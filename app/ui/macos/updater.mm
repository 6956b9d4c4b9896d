#include "app/ui/updater.h"

#import <Sparkle/Sparkle.h>

/// What the update framework asks of an application without a Dock icon.
@interface ZelvaneUpdateReminders : NSObject <SPUStandardUserDriverDelegate>
@end

@implementation ZelvaneUpdateReminders
- (BOOL)supportsGentleScheduledUpdateReminders {
  return YES;
}
@end

namespace zelvane {
namespace {

class SparkleUpdater : public Updater {
 public:
  SparkleUpdater()
      : reminders_([[ZelvaneUpdateReminders alloc] init]),
        controller_([[SPUStandardUpdaterController alloc] initWithStartingUpdater:YES
                                                                  updaterDelegate:nil
                                                               userDriverDelegate:reminders_]) {}

  void checkForUpdates() override { [controller_ checkForUpdates:nil]; }

 private:
  ZelvaneUpdateReminders* reminders_;  ///< the framework does not own it
  SPUStandardUpdaterController* controller_;
};

}  // namespace

std::unique_ptr<Updater> Updater::start() { return std::make_unique<SparkleUpdater>(); }

}  // namespace zelvane
