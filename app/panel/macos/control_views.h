// Buttons and fold rows as views, and what every control calls. Main thread.
#pragma once

#import "app/panel/macos/made_view.h"

#include "app/panel/panel_tree.h"

// What a control, a menu item or the status item calls when it is used. They hold their target weakly, so
// whoever makes one keeps the target as long as the control.
// Classes share one name space with every framework of the process; the runtime sees a longer name.
__attribute__((objc_runtime_name("TarnwickTarget")))
@interface Target : NSObject

+ (instancetype)targetWithAction:(void (^)(void))action;

@property(nonatomic, copy, readonly) void (^action)(void);

- (void)fire;

@end

namespace tarnwick::panel {

// No wider than `width`.
MadeView makeButton(const Button& button, double width, Target* target);

// Around the row, which stays a picture: the whole surface is one button.
MadeView makeFold(const Fold& fold, const MadeView& row, Target* target);

}  // namespace tarnwick::panel
