#include "hosts/macos/thermal_state_source.h"

#import <Foundation/Foundation.h>

namespace embrix {

ThermalState MacThermalStateSource::read() {
  @autoreleasepool {
    switch (NSProcessInfo.processInfo.thermalState) {
      case NSProcessInfoThermalStateNominal:
        return ThermalState::nominal;
      case NSProcessInfoThermalStateFair:
        return ThermalState::fair;
      case NSProcessInfoThermalStateSerious:
        return ThermalState::serious;
      case NSProcessInfoThermalStateCritical:
        return ThermalState::critical;
    }
    return ThermalState::nominal;
  }
}

}  // namespace embrix
