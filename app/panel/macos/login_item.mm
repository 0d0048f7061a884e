#include "app/panel/macos/login_item.h"

#import <Foundation/Foundation.h>

// What is asked of SMAppService. Not every SDK has its framework: it is loaded when it is needed.
@protocol LoginItemService <NSObject>

@property(class, readonly) id<LoginItemService> mainAppService;
@property(readonly) NSInteger status;

- (BOOL)registerAndReturnError:(NSError**)error;
- (BOOL)unregisterAndReturnError:(NSError**)error;

@end

namespace tarnwick::panel {
namespace {

constexpr NSInteger enabled = 1;  // SMAppServiceStatusEnabled

// Nil where the system does not have it.
id<LoginItemService> service() {
  if (![[NSBundle bundleWithPath:@"/System/Library/Frameworks/ServiceManagement.framework"] load]) return nil;
  const Class<LoginItemService> known = NSClassFromString(@"SMAppService");
  return [known mainAppService];
}

}  // namespace

bool isLoginItem() {
  @autoreleasepool {
    return service().status == enabled;
  }
}

void setLoginItem(bool on) {
  @autoreleasepool {
    if (on) {
      [service() registerAndReturnError:nil];
    } else {
      [service() unregisterAndReturnError:nil];
    }
  }
}

}  // namespace tarnwick::panel
