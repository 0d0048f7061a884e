#include "sampling/macos/macos_thermal.h"

#import <Foundation/Foundation.h>

namespace tarnwick {

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

}  // namespace tarnwick
