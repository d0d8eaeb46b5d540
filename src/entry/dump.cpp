#include "entry/dump.h"

#include <optional>

#include "cleanup/cleanup.h"
#include "entry/options.h"
#include "entry/report_cleanup.h"
#include "entry/report_json.h"
#include "entry/report_text.h"
#include "model/control_state.h"
#include "records/overnight_log.h"
#include "records/power_log.h"
#include "sampling/sampler.h"

namespace embrix {

namespace {

constexpr double kSecondsBetweenTicks = 2;

std::optional<Frame> secondFrame(Host& host, bool throttle) {
  Sampler sampler(host, SamplerOptions{.throttle = throttle});
  sampler.next();
  host.clock->sleep(kSecondsBetweenTicks);
  return sampler.next();
}

std::string cleanupReport(Host& host) {
  host.clock->beginTick();
  ScanWatch watch;
  const double now = host.clock->wallTime();
  return reportCleanup(
      Cleanup::discover(CleanupPorts::of(host), host.user.homeDirectory, now, watch), now);
}

}  // namespace

std::string dump(Host& host, const std::vector<std::string>& arguments,
                 const std::function<std::unique_ptr<SettingsStore>()>& controlSuite) {
  if (hasOption(arguments, option::kCleanup)) return cleanupReport(host);

  const auto frame = secondFrame(host, hasOption(arguments, option::kThrottle));
  if (!frame) return {};
  if (hasOption(arguments, option::kJSON)) return reportJSON(*frame);

  ReportExtras extras;
  if (controlSuite) {
    const auto state = ControlState::load(controlSuite().get());
    if (state) extras.controlTitle = state->title();
  }
  extras.overnight = OvernightLog::parse(PowerLog::read(*host.powerLog));
  return reportText(*frame, extras);
}

}  // namespace embrix
