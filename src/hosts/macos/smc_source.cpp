#include "hosts/macos/smc_source.h"

#include <mach/mach_init.h>

#include "darwin/smc_packet.h"
#include "hosts/macos/io_registry.h"

namespace embrix {

MacSmcSource::MacSmcSource() {
  const IoHolder service = firstService("AppleSMC");
  if (!service) return;
  if (IOServiceOpen(service.get(), mach_task_self(), 0, &connection_) != KERN_SUCCESS) {
    connection_ = IO_OBJECT_NULL;
  }
}

MacSmcSource::~MacSmcSource() {
  if (isOpen()) IOServiceClose(connection_);
}

bool MacSmcSource::call(const SmcPacketBytes& input, SmcPacketBytes& output) {
  if (!isOpen()) return false;
  std::size_t size = output.size();
  return IOConnectCallStructMethod(connection_, kSmcCallSelector, input.data(), input.size(),
                                   output.data(), &size) == KERN_SUCCESS;
}

}  // namespace embrix
