// refused: property 'frontMostApplication' not found
#import <AppKit/AppKit.h>
NSRunningApplication* misspelt(NSWorkspace* workspace) { return workspace.frontMostApplication; }
