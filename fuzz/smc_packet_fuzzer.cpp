// Any bytes as what a controller answers: a record, and a value of every type.
#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include "darwin/smc_packet.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace embrix;
  SmcPacketBytes record{};
  std::copy_n(data, std::min(size, record.size()), record.begin());
  const Packet packet = Packet::decode(record);
  if (Packet::decode(packet.encode()) != packet) std::abort();

  const auto value = packet.value(packet.dataSize);
  if (value.size() > packet.bytes.size()) std::abort();
  for (const std::uint32_t type :
       {packet.dataType, fourCC("flt "), fourCC("ui8 "), fourCC("ui16"), fourCC("fpe2")}) {
    const auto number = smcValue(type, value);
    if (number && !std::isfinite(*number)) std::abort();
    if (number && type != fourCC("flt ") && *number < 0) std::abort();
  }
  return 0;
}
