// The pills below the hero: battery, temperature, fans. A pure reading of the model. Main thread
// only, as the model is.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "frame/fan.h"
#include "model/power_model.h"
#include "surfaces/record_fields.h"

namespace embrix {

struct FactsContent {
  struct Battery {
    double fraction = 0;  // 0 to 1; 0 when the charge is not known
    std::string text;

    static constexpr auto fields() {
      return std::tuple{field("fraction", &Battery::fraction), field("text", &Battery::text)};
    }
    bool operator==(const Battery&) const = default;
  };

  std::optional<Battery> battery;
  std::optional<std::string> temperature;
  std::string fans;

  static FactsContent of(const PowerModel& model);

  static std::string fansText(const std::vector<Fan>& fans);

  static constexpr auto fields() {
    return std::tuple{field("battery", &FactsContent::battery),
                      field("temperature", &FactsContent::temperature),
                      field("fans", &FactsContent::fans)};
  }
  bool operator==(const FactsContent&) const = default;
};

}  // namespace embrix
