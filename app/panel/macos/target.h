// What a control, a menu item or the status item calls when it is used. They hold their target weakly, so
// whoever makes one keeps the target as long as the control. Main thread.
#pragma once

#import <Foundation/Foundation.h>

// Classes share one name space with every framework of the process; the runtime sees a longer name.
__attribute__((objc_runtime_name("TarnwickTarget")))
@interface Target : NSObject

+ (instancetype)targetWithAction:(void (^)(void))action;

@property(nonatomic, copy, readonly) void (^action)(void);

- (void)fire;

@end
