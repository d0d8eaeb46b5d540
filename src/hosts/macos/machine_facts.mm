#include "hosts/macos/machine_facts.h"

#import <Foundation/Foundation.h>

#include "hosts/macos/io_registry.h"
#include "hosts/macos/memory_source.h"
#include "hosts/macos/system_control.h"

namespace embrix {

MachineFacts macMachineFacts() {
  @autoreleasepool {
    const NSOperatingSystemVersion version = NSProcessInfo.processInfo.operatingSystemVersion;
    return {.productName = dataTextAt("IODeviceTree:/product", "product-name"),
            .chip = systemText("machdep.cpu.brand_string"),
            .performanceCores = systemNumber("hw.perflevel0.physicalcpu"),
            .efficiencyCores = systemNumber("hw.perflevel1.physicalcpu"),
            .memoryBytes = physicalMemoryBytes(),
            .systemName = "macOS",
            .systemMajor = static_cast<int>(version.majorVersion),
            .systemMinor = static_cast<int>(version.minorVersion),
            .systemPatch = static_cast<int>(version.patchVersion),
            .model = systemText("hw.model")};
  }
}

}  // namespace embrix
