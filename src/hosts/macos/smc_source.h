// The system management controller's service, opened once. Sampling thread only.
#pragma once

#include <IOKit/IOKitLib.h>

#include "host/smc_source.h"

namespace embrix {

class MacSmcSource final : public SmcSource {
 public:
  MacSmcSource();
  ~MacSmcSource() override;
  MacSmcSource(const MacSmcSource&) = delete;
  MacSmcSource& operator=(const MacSmcSource&) = delete;

  bool isOpen() override { return connection_ != IO_OBJECT_NULL; }
  bool call(const SmcPacketBytes& input, SmcPacketBytes& output) override;

 private:
  io_connect_t connection_ = IO_OBJECT_NULL;
};

}  // namespace embrix
