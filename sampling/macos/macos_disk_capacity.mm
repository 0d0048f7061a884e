#include "sampling/macos/macos_disk_capacity.h"

#import <Foundation/Foundation.h>

namespace tarnwick {

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
