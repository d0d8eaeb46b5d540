#pragma once

#include <string_view>

namespace embrix {

// How hard the system holds itself back because of heat. The numbers are the platform's own.
enum class ThermalState { nominal = 0, fair = 1, serious = 2, critical = 3 };

// Whether the system slows the machine down to cool it.
constexpr bool isThrottled(ThermalState state) {
  return state == ThermalState::serious || state == ThermalState::critical;
}

constexpr std::string_view thermalStateName(ThermalState state) {
  switch (state) {
    case ThermalState::nominal:
      return "nominal";
    case ThermalState::fair:
      return "fair";
    case ThermalState::serious:
      return "serious";
    case ThermalState::critical:
      return "critical";
  }
  return "nominal";
}

}  // namespace embrix
