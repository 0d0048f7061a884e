#include "sampling/macos/desktop_session.h"

#import <AppKit/AppKit.h>
#import <Foundation/Foundation.h>

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

ThermalState currentThermalState() {
  @autoreleasepool {
    switch (NSProcessInfo.processInfo.thermalState) {
      case NSProcessInfoThermalStateFair:
        return ThermalState::fair;
      case NSProcessInfoThermalStateSerious:
        return ThermalState::serious;
      case NSProcessInfoThermalStateCritical:
        return ThermalState::critical;
      case NSProcessInfoThermalStateNominal:
        break;
    }
    return ThermalState::nominal;
  }
}

std::optional<std::int64_t> importantUsageCapacity() {
  @autoreleasepool {
    // A new URL each time: one that was asked before would answer from its memory.
    NSURL* volume = [NSURL fileURLWithPath:@"/" isDirectory:YES];
    id capacity = nil;
    if (![volume getResourceValue:&capacity
                           forKey:NSURLVolumeAvailableCapacityForImportantUsageKey
                            error:nil] ||
        ![capacity isKindOfClass:NSNumber.class]) {
      return std::nullopt;
    }
    return [capacity longLongValue];
  }
}

}  // namespace tarnwick
