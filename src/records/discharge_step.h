// What one frame does to the discharge session: whether it goes on, ends or begins anew, and what
// was used since the frame before. Main thread.
#pragma once

#include <optional>

#include "frame/frame.h"
#include "records/discharge_session.h"

namespace embrix {

// What the step remembers from frame to frame.
struct DischargeState {
  std::optional<DischargeSession> session;
  std::optional<bool> wasOnBattery;   // absent until the first frame with a battery
  std::optional<double> pendingWake;  // a wake that no frame has told the session of; since 1970

  bool operator==(const DischargeState&) const = default;
};

// A session that was left so long ago is not gone on with after a restart: seconds.
inline constexpr double kForgottenSession = 12 * 3600;

// Whether a frame on battery begins a new session.
bool beginsDischarge(const DischargeState& state, double now, std::optional<int> percent);

// `previousDate` is the time of the frame before, seconds since 1970; absent for the first of a
// run. `totalWatts` is what the whole machine draws by the model's reckoning.
void recordDischarge(DischargeState& state, const Frame& frame, std::optional<double> previousDate,
                     double totalWatts);

}  // namespace embrix
