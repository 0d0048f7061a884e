// A second start of the program in the same session asks the first one to open its panel. The two talk
// through the session's distributed notifications, and the first one answers: a start that gets no answer
// goes on as if it were alone. Main thread.
#pragma once

#import <Foundation/Foundation.h>

#include <functional>

// Hears one kind of distributed notification as long as it lives.
__attribute__((objc_runtime_name("TarnwickListener")))
@interface Listener : NSObject

// `object` nil: whatever it is about.
- (instancetype)initForName:(NSNotificationName)name
                     object:(NSString*)object
                     action:(void (^)(NSString* object))action;

- (void)stop;

@end

namespace tarnwick::panel {

// True when another instance has opened its panel. Waits only when there may be one, two seconds at most.
bool askFirstInstance();

// Answers later starts until it is stopped.
Listener* listenForSecondStarts(std::function<void()> open);

}  // namespace tarnwick::panel
