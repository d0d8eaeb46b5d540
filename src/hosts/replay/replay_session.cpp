#include "hosts/replay/replay_session.h"

#include <utility>

#include "hosts/replay/process_table_change.h"

namespace embrix {

std::optional<RecordingProblem> ReplayedTicks::enter(RecordedTick next) {
  tick = std::move(next);
  if (tables.size() > 1) tables.erase(tables.begin(), tables.end() - 1);
  std::vector<RawProcess> table = tables.empty() ? std::vector<RawProcess>{} : tables.back();
  if (!tick.processes.empty()) tables.clear();
  for (const ProcessTableChange& change : tick.processes) {
    if (auto problem = applyProcessTableChange(change, table)) return problem;
    known.tableIs(table);
    tables.push_back(table);
  }
  known.learn(tick.lasting);
  return std::nullopt;
}

ReplaySession::ReplaySession(const RecordingHeader& header, std::unique_ptr<RecordingReader> reader,
                             std::uint64_t ticks)
    : reader_(std::move(reader)), ticks_(ticks), state_(header) {
  next_ = reader_->tick();
  // What stands before the first tick.
  if (next_ && next_->number == 0) {
    state_.enter(std::move(*next_));
    next_ = reader_->tick();
  }
}

void ReplaySession::beginTick() {
  const std::lock_guard lock(mutex_);
  if (begun_ == ticks_) return;
  // A file that lost its lines since they were read through ends here.
  const bool isOver = !next_ || state_.enter(std::move(*next_));
  begun_ = isOver ? ticks_ : begun_ + 1;
  next_ = begun_ == ticks_ ? std::nullopt : reader_->tick();
}

ReplayedMoment ReplaySession::moment() const {
  const std::lock_guard lock(mutex_);
  ReplayedMoment moment{.uptime = state_.uptime, .wallTime = state_.wallTime, .nextUptime = {}};
  if (next_ && !next_->uptime.empty()) moment.nextUptime = next_->uptime.front();
  return moment;
}

bool ReplaySession::finished() const {
  const std::lock_guard lock(mutex_);
  return begun_ == ticks_;
}

double ReplaySession::uptime() {
  const std::lock_guard lock(mutex_);
  state_.uptime = taken(state_.tick.uptime).value_or(state_.uptime);
  return state_.uptime;
}

double ReplaySession::wallTime() {
  const std::lock_guard lock(mutex_);
  state_.wallTime = taken(state_.tick.wallTime).value_or(state_.wallTime);
  return state_.wallTime;
}

void ReplaySession::readTable(std::vector<RawProcess>& table) {
  const std::lock_guard lock(mutex_);
  table = taken(state_.tables).value_or(std::vector<RawProcess>{});
}

std::optional<double> ReplaySession::temperature(std::size_t sensor) {
  const std::lock_guard lock(mutex_);
  const auto answers = state_.tick.temperatures.find(sensor);
  if (answers == state_.tick.temperatures.end()) return std::nullopt;
  return taken(answers->second).value_or(std::nullopt);
}

std::string ReplaySession::powerLog() const {
  const std::lock_guard lock(mutex_);
  return state_.known.standing().powerLog.value_or("");
}

}  // namespace embrix
