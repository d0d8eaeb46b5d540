// The story of the last sleep, read from the system's power log.

#include <utility>

#include "model/power_model.h"
#include "records/power_log.h"

namespace embrix {

namespace {

constexpr double kSecondsBetweenReads = 1800;

}  // namespace

void PowerModel::refreshOvernight(bool force) {
  if (*isFixture_) return;
  const double now = ports_.scheduler.uptime();
  if (!force && now - overnightReadAt_ <= kSecondsBetweenReads) return;
  overnightReadAt_ = now;  // at once, so that a second caller starts no second read
  if (powerLogRead_.isPending()) {
    mustReadPowerLogAgain_ = true;  // it takes seconds; what it finds may be older than this wake
    return;
  }
  readPowerLog();
}

void PowerModel::readPowerLog() {
  powerLogRead_ = ports_.scheduler.background(
      WorkPriority::utility,
      [&source = ports_.powerLog] { return OvernightLog::parse(PowerLog::read(source)); },
      [this](std::optional<Overnight> overnight) {
        if (!*isFixture_) overnight_ = std::move(overnight);
        if (std::exchange(mustReadPowerLogAgain_, false)) readPowerLog();
      });
}

}  // namespace embrix
