#include "platform/column_window.h"

#import <AppKit/AppKit.h>
#import <objc/message.h>

namespace zelvane::platform {
namespace {

/// Whoever types into the column means the terminal's command when ⌘Q slips out.
void takeKeyFromQuit() {
  for (NSMenuItem* menu in NSApp.mainMenu.itemArray) {
    for (NSMenuItem* item in menu.submenu.itemArray) {
      if ([item.keyEquivalent isEqualToString:@"q"]) item.keyEquivalent = @"";
    }
  }
}

/// The window server reads the style bit only when a window is made, and the toolkit makes ours.
/// Where the kit no longer has this, a click brings the application to the front.
void tellWindowServer(NSPanel* panel) {
  const SEL selector = sel_registerName("_setPreventsActivation:");
  if (![panel respondsToSelector:selector]) return;
  reinterpret_cast<void (*)(id, SEL, BOOL)>(objc_msgSend)(panel, selector, YES);
}

void leaveFocusAlone(NSPanel* panel) {
  panel.floatingPanel = NO;
  // Not resizable by the system: the column has grips of its own.
  panel.styleMask = NSWindowStyleMaskBorderless | NSWindowStyleMaskNonactivatingPanel;
  tellWindowServer(panel);
}

/// The toolkit undoes this whenever it is told whether the window takes the keyboard.
void shape(NSWindow* window) {
  if ([window isKindOfClass:[NSPanel class]]) leaveFocusAlone(static_cast<NSPanel*>(window));
  window.collectionBehavior = NSWindowCollectionBehaviorCanJoinAllSpaces |
                              NSWindowCollectionBehaviorIgnoresCycle |
                              NSWindowCollectionBehaviorFullScreenNone;
  window.level = NSNormalWindowLevel;
  window.hidesOnDeactivate = NO;
  window.hasShadow = YES;
  window.movable = NO;
}

}  // namespace

std::string columnWindowSystem() { return "cocoa"; }

// Draws what it never shows, and is the only one that a bundle brings along.
std::string pictureWindowSystem() { return columnWindowSystem(); }

bool columnWindowSystemReachable() { return true; }

bool columnIsToolWindow() { return true; }

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
  // The bundle's property list says the same; a program that runs outside of one has none.
  [NSApp setActivationPolicy:NSApplicationActivationPolicyAccessory];
  takeKeyFromQuit();
  shape(state_->window);
}

// A panel of this kind takes keys while another application stays in front: nobody lends them, and
// that application has them again as soon as the panel gives them up.
void ColumnWindow::borrowKeyboard() { shape(state_->window); }

void ColumnWindow::insistOnKeyboard() {
  NSWindow* window = state_->window;
  if (!window.keyWindow) [window makeKeyWindow];
}

void ColumnWindow::returnKeyboard() {
  NSWindow* window = state_->window;
  shape(window);
  if (window.keyWindow) [window resignKeyWindow];
}

void ColumnWindow::insistOnReturn() {}

bool ColumnWindow::translucencyWorks() const { return true; }

bool ColumnWindow::covered() const {
  NSWindow* window = state_->window;
  return window && (window.occlusionState & NSWindowOcclusionStateVisible) == 0;
}

}  // namespace zelvane::platform
