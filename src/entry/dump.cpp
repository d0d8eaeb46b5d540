#include "entry/dump.h"

#include <optional>

#include "entry/options.h"
#include "entry/report_json.h"
#include "entry/report_text.h"
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

}  // namespace

std::string dump(Host& host, const std::vector<std::string>& arguments) {
  // No cache is catalogued yet, so a cleanup finds nothing.
  if (hasOption(arguments, option::kCleanup)) return {};

  const auto frame = secondFrame(host, hasOption(arguments, option::kThrottle));
  if (!frame) return {};
  if (hasOption(arguments, option::kJSON)) return reportJSON(*frame);

  ReportExtras extras;
  extras.overnight = OvernightLog::parse(PowerLog::read(*host.powerLog));
  return reportText(*frame, extras);
}

}  // namespace embrix
