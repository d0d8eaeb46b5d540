// From one frame to the next, and who waits for the first.

#include <algorithm>
#include <cmath>
#include <utility>

#include "model/power_model.h"
#include "model/setting_keys.h"

namespace embrix {

namespace {

constexpr double kShortestInterval = 1;  // seconds
constexpr double kUnseenInterval = 10;   // seconds, while nobody looks
constexpr double kFramePoll = 0.2;       // seconds between two looks for the first frame

}  // namespace

void PowerModel::askForFrame() {
  // Not behind what nobody waits for: a frame must not wait for a file to be written.
  sampling_ = ports_.scheduler.background(
      WorkPriority::userInitiated,
      [frames = ports_.frames, spent = std::exchange(spent_, {})]() mutable {
        return frames(std::move(spent));
      },
      [this](std::optional<Frame> frame) { takeFrame(std::move(frame)); });
}

void PowerModel::takeFrame(std::optional<Frame> frame) {
  if (frame) apply(std::move(*frame));
  // A pause, not a period: it begins where the work ends.
  pause_ = ports_.scheduler.after(currentInterval(), [this] { askForFrame(); });
}

double PowerModel::currentInterval() const {
  if (*visibleSurfaces_ <= 0 && !ports_.defaults.boolFor(SettingKeys::kShowWattsInMenuBar)) {
    return kUnseenInterval;
  }
  const double set = ports_.defaults.doubleFor(SettingKeys::kSampleInterval);
  if (!std::isfinite(set)) return kUnseenInterval;  // nothing that could be waited for
  return std::max(set, kShortestInterval);
}

void PowerModel::waitForFrame(double seconds, FrameReply reply) {
  const auto wait =
      frameWaits_.insert(frameWaits_.end(), {.wallDeadline = ports_.scheduler.wallTime() + seconds,
                                             .uptimeDeadline = ports_.scheduler.uptime() + seconds,
                                             .reply = std::move(reply),
                                             .poll = {}});
  lookForFrame(wait);
}

void PowerModel::lookForFrame(std::list<FrameWait>::iterator wait) {
  Scheduler& scheduler = ports_.scheduler;
  const bool hasTime =
      scheduler.wallTime() < wait->wallDeadline && scheduler.uptime() < wait->uptimeDeadline;
  if (!*frame_ && hasTime) {
    wait->poll = scheduler.after(kFramePoll, [this, wait] { lookForFrame(wait); });
    return;
  }
  const FrameReply reply = std::move(wait->reply);
  frameWaits_.erase(wait);
  reply(*frame_);
}

}  // namespace embrix
