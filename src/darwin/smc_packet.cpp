#include "darwin/smc_packet.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstring>

namespace embrix {

namespace {

// The controller's link is little-endian on every machine that has one, and so is each host that
// this runs on; host order and memory order are then the same.
static_assert(std::endian::native == std::endian::little);

void put(SmcPacketBytes& record, std::size_t offset, std::uint32_t word) {
  std::memcpy(record.data() + offset, &word, sizeof word);
}

std::uint32_t wordAt(const SmcPacketBytes& record, std::size_t offset) {
  std::uint32_t word = 0;
  std::memcpy(&word, record.data() + offset, sizeof word);
  return word;
}

std::optional<double> bigEndian16(std::span<const std::uint8_t> bytes) {
  if (bytes.size() < 2) return std::nullopt;
  return bytes[0] * 256 + bytes[1];
}

std::optional<double> littleEndianFloat(std::span<const std::uint8_t> bytes) {
  float number = 0;
  if (bytes.size() < sizeof number) return std::nullopt;
  std::memcpy(&number, bytes.data(), sizeof number);
  if (!std::isfinite(number)) return std::nullopt;
  return number;
}

}  // namespace

SmcPacketBytes Packet::encode() const {
  SmcPacketBytes record{};
  put(record, smc_layout::kKeyOffset, key);
  put(record, smc_layout::kDataSizeOffset, dataSize);
  put(record, smc_layout::kDataTypeOffset, dataType);
  record[smc_layout::kResultOffset] = result;
  record[smc_layout::kCommandOffset] = command;
  std::copy(bytes.begin(), bytes.end(), record.begin() + smc_layout::kBytesOffset);
  return record;
}

Packet Packet::decode(const SmcPacketBytes& record) {
  Packet packet;
  packet.key = wordAt(record, smc_layout::kKeyOffset);
  packet.dataSize = wordAt(record, smc_layout::kDataSizeOffset);
  packet.dataType = wordAt(record, smc_layout::kDataTypeOffset);
  packet.result = record[smc_layout::kResultOffset];
  packet.command = record[smc_layout::kCommandOffset];
  std::copy_n(record.begin() + smc_layout::kBytesOffset, packet.bytes.size(), packet.bytes.begin());
  return packet;
}

std::span<const std::uint8_t> Packet::value(std::uint32_t size) const {
  return std::span(bytes).first(std::min<std::size_t>(size, bytes.size()));
}

std::optional<double> smcValue(std::uint32_t type, std::span<const std::uint8_t> bytes) {
  switch (type) {
    case fourCC("flt "):
      return littleEndianFloat(bytes);
    case fourCC("ui8 "):
      return bytes.empty() ? std::nullopt : std::optional<double>(bytes[0]);
    case fourCC("ui16"):
      return bigEndian16(bytes);
    case fourCC("fpe2"): {
      const auto quarters = bigEndian16(bytes);
      return quarters ? std::optional(*quarters * 0.25) : std::nullopt;
    }
    default:
      return std::nullopt;
  }
}

}  // namespace embrix
