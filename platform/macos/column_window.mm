#include "platform/column_window.h"

#import <AppKit/AppKit.h>

namespace zelvane::platform {

std::string columnWindowSystem() { return "cocoa"; }

bool columnWindowSystemReachable() { return true; }

/// The window is the toolkit's: it goes with the view that shows the column.
struct ColumnWindow::State {
  NSWindow* __weak window;
};

ColumnWindow::ColumnWindow(std::unique_ptr<State> opened) : state_(std::move(opened)) {}

ColumnWindow::~ColumnWindow() = default;

std::unique_ptr<ColumnWindow> ColumnWindow::of(std::string_view windowSystem,
                                               std::uint64_t window) {
  if (windowSystem != columnWindowSystem()) return nullptr;
  // The toolkit's native id is the view that fills the window.
  NSView* view = (__bridge NSView*)reinterpret_cast<void*>(static_cast<std::uintptr_t>(window));
  NSWindow* found = view.window;
  if (!found) return nullptr;
  auto opened = std::make_unique<State>();
  opened->window = found;
  return std::unique_ptr<ColumnWindow>(new ColumnWindow(std::move(opened)));
}

void ColumnWindow::standAside() {
  NSWindow* window = state_->window;
  window.collectionBehavior = NSWindowCollectionBehaviorCanJoinAllSpaces |
                              NSWindowCollectionBehaviorIgnoresCycle |
                              NSWindowCollectionBehaviorFullScreenNone;
  window.level = NSNormalWindowLevel;
  window.hidesOnDeactivate = NO;
  window.hasShadow = YES;
  window.movable = NO;
  // Only a panel can take keys without its application coming to the front.
  if (![window isKindOfClass:[NSPanel class]]) return;
  NSPanel* panel = static_cast<NSPanel*>(window);
  panel.floatingPanel = NO;
  panel.styleMask |= NSWindowStyleMaskNonactivatingPanel;
}

bool ColumnWindow::translucencyWorks() const { return true; }

bool ColumnWindow::covered() const {
  NSWindow* window = state_->window;
  return window && (window.occlusionState & NSWindowOcclusionStateVisible) == 0;
}

}  // namespace zelvane::platform
