// What keeps the machine awake without visibly working. A pure reading of the model. Main thread
// only, as the model is.
#pragma once

#include <string>
#include <vector>

#include "model/power_model.h"
#include "surfaces/record_fields.h"

namespace embrix {

struct BlockerContent {
  std::string id;
  std::string name;
  std::string detail;

  // `now` in seconds since 1970.
  static BlockerContent of(const SleepBlocker& blocker, double now);

  static std::string nameOf(const SleepBlocker& blocker);

  static constexpr auto fields() {
    return std::tuple{field("id", &BlockerContent::id), field("name", &BlockerContent::name),
                      field("detail", &BlockerContent::detail)};
  }
  bool operator==(const BlockerContent&) const = default;
};

struct AwakeContent {
  // Shorter holds than this never show, seconds.
  static constexpr double kLeastHold = 1800;
  // An app that draws so many watts is at work, and not to be blamed.
  static constexpr double kAtWork = 0.5;

  // In the frame's order. `now` in seconds since 1970.
  static std::vector<SleepBlocker> awakeBlockers(const PowerModel& model, double now);

  static std::vector<BlockerContent> of(const PowerModel& model, double now);
};

}  // namespace embrix
