// The bare window of the panel: borderless, above everything, and able to have the keyboard. It tells what
// the user does to it; whoever made it decides. Main thread.
#pragma once

#import <AppKit/AppKit.h>

__attribute__((objc_runtime_name("TarnwickPopupWindow")))
@interface PopupWindow : NSPanel

// With an empty rounded content view, not on the screen.
+ (instancetype)makeWindow;

@property(nonatomic, copy) void (^focusLeft)(void);  // another window has the keyboard
@property(nonatomic, copy) void (^dismissed)(void);  // Escape or Command-W
@property(nonatomic, copy) void (^quit)(void);       // Command-Q

@end
