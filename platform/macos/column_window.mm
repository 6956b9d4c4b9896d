#include "platform/column_window.h"

#import <AppKit/AppKit.h>
#import <objc/message.h>

namespace zelvane::platform {
namespace {

/// The toolkit's menu bar is never seen. Whoever types into the column means the terminal when ⌘Q
/// or ⌘H slips out, and has nowhere to bring a hidden column back.
void takeKeysFromMenus() {
  for (NSMenuItem* menu in NSApp.mainMenu.itemArray) {
    for (NSMenuItem* item in menu.submenu.itemArray) item.keyEquivalent = @"";
  }
}

/// The window server reads the style bit only when a window is made, and the toolkit makes ours.
/// Where the kit no longer has this, a click brings the application to the front.
void tellWindowServer(NSPanel* panel) {
  const SEL selector = sel_registerName("_setPreventsActivation:");
  if (![panel respondsToSelector:selector]) return;
  reinterpret_cast<void (*)(id, SEL, BOOL)>(objc_msgSend)(panel, selector, YES);
}

/// The toolkit gives a window without a frame the traits of one with buttons, which nobody sees.
/// They stay: without any, AppKit may put the view into another frame, and back at each change of
/// a flag. Not resizable by the system: the column has grips of its own.
void keepFromActivating(NSWindow* window) {
  if (![window isKindOfClass:[NSPanel class]]) return;
  window.styleMask =
      (window.styleMask & ~NSWindowStyleMaskResizable) | NSWindowStyleMaskNonactivatingPanel;
  tellWindowServer(static_cast<NSPanel*>(window));
}

/// The toolkit's native id is the view that fills the window.
NSView* viewOf(std::uint64_t id) {
  return (__bridge NSView*)reinterpret_cast<void*>(static_cast<std::uintptr_t>(id));
}

void shape(NSWindow* window) {
  keepFromActivating(window);
  if ([window isKindOfClass:[NSPanel class]]) static_cast<NSPanel*>(window).floatingPanel = NO;
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

/// The toolkit may put its view into another window: only the view is the column's for good.
struct ColumnWindow::State {
  NSView* __weak view;
  NSWindow* window() const { return view.window; }
};

ColumnWindow::ColumnWindow(std::unique_ptr<State> opened) : state_(std::move(opened)) {}

ColumnWindow::~ColumnWindow() = default;

std::unique_ptr<ColumnWindow> ColumnWindow::of(std::string_view windowSystem,
                                               std::uint64_t window) {
  if (windowSystem != columnWindowSystem()) return nullptr;
  NSView* view = viewOf(window);
  if (!view.window) return nullptr;
  auto opened = std::make_unique<State>();
  opened->view = view;
  return std::unique_ptr<ColumnWindow>(new ColumnWindow(std::move(opened)));
}

void ColumnWindow::standAside() {
  // The bundle's property list says the same; a program that runs outside of one has none.
  [NSApp setActivationPolicy:NSApplicationActivationPolicyAccessory];
  takeKeysFromMenus();
  shape(state_->window());
}

// The toolkit only orders it before the windows of its own application, and that is not in front.
void ColumnWindow::comeForward() { [state_->window() orderFrontRegardless]; }

bool ColumnWindow::grantsFramesLater() const { return false; }

void ColumnWindow::holdPictureBelow(bool) {}

// The toolkit sets style, level and shadow anew with every flag.
void ColumnWindow::change(const std::function<void()>& byToolkit) {
  byToolkit();
  shape(state_->window());
}

// To the toolkit a menu is a panel like any other: a click would bring the application to the
// front.
void ColumnWindow::leaveFocusAlone(std::uint64_t popup) {
  keepFromActivating(viewOf(popup).window);
}

// A panel of this kind takes keys while another application stays in front: nobody lends them, and
// that application has them again as soon as the panel gives them up.
void ColumnWindow::borrowKeyboard() {}

// It is granted at once.
bool ColumnWindow::keyboardCame() { return true; }

void ColumnWindow::insistOnKeyboard() {
  NSWindow* window = state_->window();
  if (!window.keyWindow) [window makeKeyWindow];
}

void ColumnWindow::returnKeyboard() {
  NSWindow* window = state_->window();
  if (window.keyWindow) [window resignKeyWindow];
}

void ColumnWindow::insistOnReturn() {}

bool ColumnWindow::translucencyWorks() const { return true; }

bool ColumnWindow::covered() const {
  NSWindow* window = state_->window();
  return window && (window.occlusionState & NSWindowOcclusionStateVisible) == 0;
}

}  // namespace zelvane::platform
