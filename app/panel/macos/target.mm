#import "app/panel/macos/target.h"

@implementation Target

+ (instancetype)targetWithAction:(void (^)(void))action {
  Target* target = [[Target alloc] init];
  target->_action = [action copy];
  return target;
}

// The action may replace the panel's views, and this target with them.
- (void)fire {
  void (^action)(void) = self.action;
  action();
}

@end
