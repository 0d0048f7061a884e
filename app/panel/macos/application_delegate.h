// What the system tells the application. Main thread.
#pragma once

#import <AppKit/AppKit.h>

__attribute__((objc_runtime_name("TarnwickApplicationDelegate")))
@interface ApplicationDelegate : NSObject<NSApplicationDelegate>

@property(nonatomic, copy) void (^launched)(void);
@property(nonatomic, copy) void (^reopened)(void);  // the bundle was opened once more
@property(nonatomic, copy) void (^ending)(void);    // the process ends when it returns

@end
