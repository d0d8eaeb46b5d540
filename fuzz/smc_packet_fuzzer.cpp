// Any bytes as what a controller answers: a record, a value of every type, and a controller that
// says what it likes to a reader of fans.
#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include "darwin/smc_packet.h"
#include "sampling/fan_reader.h"

namespace {

using namespace embrix;

void require(bool holds) {
  if (!holds) std::abort();
}

// Each answer is the next bytes of the input, then zeros.
struct AnyController final : SmcSource {
  AnyController(const std::uint8_t* data, std::size_t size) : next(data), left(size) {}
  bool isOpen() override { return true; }
  bool call(const SmcPacketBytes& input, SmcPacketBytes& output) override {
    const Packet question = Packet::decode(input);
    require(question.result == 0 && question.dataType == 0);
    require(question.command == kSmcReadValue || question.command == kSmcReadKeyInfo);
    const std::size_t size = std::min(left, output.size());
    output.fill(0);
    std::copy_n(next, size, output.begin());
    next += size;
    left -= size;
    return size > 0;
  }
  const std::uint8_t* next;
  std::size_t left;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  SmcPacketBytes record{};
  std::copy_n(data, std::min(size, record.size()), record.begin());
  const Packet packet = Packet::decode(record);
  require(Packet::decode(packet.encode()) == packet);

  const auto value = packet.value(packet.dataSize);
  require(value.size() <= packet.bytes.size());
  for (const std::uint32_t type :
       {packet.dataType, fourCC("flt "), fourCC("ui8 "), fourCC("ui16"), fourCC("fpe2")}) {
    const auto number = smcValue(type, value);
    require(!number || std::isfinite(*number));
    require(!number || type == fourCC("flt ") || *number >= 0);
  }

  AnyController controller(data, size);
  FanReader reader(controller);
  for (int tick = 0; tick < 2; ++tick) {
    const auto fans = reader.read();
    require(fans.size() <= 255);
    for (const Fan& fan : fans) {
      require(std::isfinite(fan.rpm) && fan.rpm >= 0);
      require(std::isfinite(fan.maxRPM) && fan.maxRPM >= 0);
    }
  }
  return 0;
}
