#import "app/panel/macos/application_delegate.h"

@implementation ApplicationDelegate

- (void)applicationDidFinishLaunching:(NSNotification*)__unused notification {
  self.launched();
}

- (BOOL)applicationShouldHandleReopen:(NSApplication*)__unused sender
                    hasVisibleWindows:(BOOL)__unused hasVisibleWindows {
  self.reopened();
  return NO;
}

- (void)applicationWillTerminate:(NSNotification*)__unused notification {
  self.ending();
}

- (BOOL)applicationSupportsSecureRestorableState:(NSApplication*)__unused application {
  return YES;
}

@end
