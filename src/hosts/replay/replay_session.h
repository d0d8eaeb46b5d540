// The replayed machine behind its sources: where the recording stands, and what it answers there.
// Its calls can come from any thread at once.
#pragma once

#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <vector>

#include "hosts/replay/known_answers.h"
#include "hosts/replay/recording_reader.h"
#include "hosts/replay/replayed_moment.h"

namespace embrix {

// One tick after another, with what stands between them. No locks.
class ReplayedTicks {
 public:
  explicit ReplayedTicks(const RecordingHeader& header)
      : uptime(header.uptime), wallTime(header.wallTime) {}

  // A problem when a process table does not follow from the one before it; the ticks are then over.
  std::optional<RecordingProblem> enter(RecordedTick next);

  RecordedTick tick;
  std::vector<std::vector<RawProcess>> tables;  // read in this tick, else the last one before it
  KnownAnswers known;
  double uptime;    // as last told
  double wallTime;  // as last told
};

class ReplaySession {
 public:
  // The reader stands behind the header; `ticks` were read through it and found whole.
  ReplaySession(const RecordingHeader& header, std::unique_ptr<RecordingReader> reader,
                std::uint64_t ticks);

  void beginTick();
  bool finished() const;
  ReplayedMoment moment() const;

  double uptime();
  double wallTime();
  void readTable(std::vector<RawProcess>& table);
  std::optional<double> temperature(std::size_t sensor);

  // The next answer to a question of the tick, then the last one for ever; absent when it was not
  // asked in it.
  template <typename Answer>
  std::optional<Answer> answer(std::vector<Answer> RecordedTick::*question) {
    const std::lock_guard lock(mutex_);
    return taken(state_.tick.*question);
  }
  template <typename Answer>
  Answer about(std::int32_t pid, Answer ProcessAnswers::*question) const {
    const std::lock_guard lock(mutex_);
    return state_.known.about(pid).*question;
  }
  template <typename Key, typename Answer>
  std::optional<Answer> lasting(std::map<Key, std::optional<Answer>> LastingAnswers::*question,
                                const Key& key) const {
    const std::lock_guard lock(mutex_);
    return knownAnswer(state_.known.standing().*question, key);
  }
  std::string powerLog() const;

 private:
  template <typename Answer>
  static std::optional<Answer> taken(std::vector<Answer>& answers) {
    if (answers.empty()) return std::nullopt;
    Answer first = answers.front();
    if (answers.size() > 1) answers.erase(answers.begin());
    return first;
  }

  mutable std::mutex mutex_;
  std::unique_ptr<RecordingReader> reader_;
  const std::uint64_t ticks_;
  std::uint64_t begun_ = 0;
  std::optional<RecordedTick> next_;  // read ahead; absent when no tick is left
  ReplayedTicks state_;
};

}  // namespace embrix
