#include "sampling/macos/macos_workspace.h"

#import <AppKit/AppKit.h>

#include "system/macos/foundation_text.h"

namespace tarnwick {

std::vector<RunningApp> MacosWorkspace::runningApps() {
  @autoreleasepool {
    std::vector<RunningApp> apps;
    for (NSRunningApplication* app in NSWorkspace.sharedWorkspace.runningApplications) {
      if (app.bundleIdentifier == nil || app.bundleURL == nil) continue;
      apps.push_back({.pid = app.processIdentifier,
                      .name = textFrom(app.localizedName),
                      .bundleID = textFrom(app.bundleIdentifier),
                      .path = textFrom(app.bundleURL.path),
                      .background = app.activationPolicy != NSApplicationActivationPolicyRegular});
    }
    return apps;
  }
}

}  // namespace tarnwick
