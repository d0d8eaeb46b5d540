#include "hosts/replay/recording_session.h"

#include "hosts/replay/process_table_change.h"

namespace embrix {

RecordingSession::RecordingSession(const RecordingHeader& header,
                                   std::shared_ptr<RecordingWriter> writer)
    : writer_(std::move(writer)) {
  writer_->append(encodeHeader(header));
}

RecordingSession::~RecordingSession() {
  writeTick();
}

void RecordingSession::beginTick() {
  const std::lock_guard lock(mutex_);
  writeTick();
  tick_ = RecordedTick{.number = tick_.number + 1};
}

void RecordingSession::noteTemperature(std::size_t sensor, std::optional<double> celsius) {
  const std::lock_guard lock(mutex_);
  tick_.temperatures[sensor].push_back(celsius);
}

void RecordingSession::noteTable(std::vector<RawProcess> table) {
  std::erase_if(table, [](const RawProcess& process) { return process.pid < 0; });
  const std::lock_guard lock(mutex_);
  if (tick_.processes.size() == kMostTablesInTick) return;
  tick_.processes.push_back(processTableChange(table_, table));
  known_.tableIs(table);
  table_ = std::move(table);
}

void RecordingSession::notePowerLog(const std::string& log) {
  const std::lock_guard lock(mutex_);
  if (known_.standing().powerLog.value_or("") == log) return;
  learn(LastingAnswers{.powerLog = log});
}

void RecordingSession::learn(const LastingAnswers& told) {
  known_.learn(told);
  learnAnswers(told, tick_.lasting);
}

void RecordingSession::writeTick() {
  const bool isBeforeTheFirst = tick_.number == 0;
  if (isBeforeTheFirst && tick_ == RecordedTick{}) return;
  writer_->append(encodeTick(tick_));
}

}  // namespace embrix
