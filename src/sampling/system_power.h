// What the whole machine draws, worked out from the battery's registry entry: the yardstick against
// which the power of processes is read. Any thread.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "host/property.h"

namespace embrix {

// A capacity, voltage, current or power as the registry has it, in thousandths (milliampere-hours,
// millivolts, milliamperes, milliwatts). A negative number that arrives as an unsigned one of 32
// bits is negative again. Absent when missing, of another type, or beyond 32 bits: that is millions
// of volts or watts, and such a number is a counter gone wrong.
std::optional<std::int32_t> electricalAt(const PropertyMap& properties, std::string_view key);

// `Voltage` in millivolts. A voltage below zero is absent too.
std::optional<std::int32_t> voltageAt(const PropertyMap& properties);

struct SystemPower {
  // Watts, never below 0. On the adapter, in this order: the measured input less what flows into
  // the battery (plus what flows out of it), the system's own figure for its load. On battery: the
  // load, then what the battery gives. Absent when none of these is known.
  static std::optional<double> watts(const PropertyMap& properties);
};

}  // namespace embrix
