// What the watts mean here.

#include "model/power_model.h"
#include "model/setting_keys.h"

namespace embrix {

LoadThresholds PowerModel::thresholds() const {
  const Settings& defaults = ports_.defaults;
  if (defaults.boolFor(SettingKeys::kAutomaticHeat)) {
    return LoadThresholds::automatic(ports_.performanceCores, baseline_->median());
  }
  return {.warm = defaults.doubleFor(SettingKeys::kWarmWatts),
          .hot = defaults.doubleFor(SettingKeys::kHotWatts)};
}

LoadLevel PowerModel::loadLevel() const {
  return thresholds().levelAt(totalWatts());
}

bool PowerModel::isThrottled() const {
  return *frame_ && embrix::isThrottled((*frame_)->thermalState);
}

bool PowerModel::isHeated() const {
  return isThrottled() || loadLevel() != LoadLevel::calm;
}

bool PowerModel::isHot() const {
  return isThrottled() || loadLevel() == LoadLevel::hot;
}

}  // namespace embrix
