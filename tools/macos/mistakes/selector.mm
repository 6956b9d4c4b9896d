// refused: instance method 'initWithSorce:' not found
#import <AppKit/AppKit.h>
id misspelt(id script, NSString* text) { return [script initWithSorce:text]; }
