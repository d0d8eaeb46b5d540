// One recording on its way into its file: gathers what is asked in a tick and writes the tick's
// line when the next begins or the session ends. Its calls can come from any thread at once.
#pragma once

#include <memory>
#include <mutex>
#include <utility>
#include <vector>

#include "hosts/replay/known_answers.h"
#include "hosts/replay/recording_writer.h"

namespace embrix {

class RecordingSession {
 public:
  // Writes the header at once.
  RecordingSession(const RecordingHeader& header, std::shared_ptr<RecordingWriter> writer);
  ~RecordingSession();

  void beginTick();

  // Adds one more answer to a question of the tick.
  template <typename List, typename Answer>
  void note(List RecordedTick::*question, const Answer& answer) {
    const std::lock_guard lock(mutex_);
    (tick_.*question).push_back(answer);
  }
  void noteTemperature(std::size_t sensor, std::optional<double> celsius);

  // Rows with a pid below 0, which no process has, are not recorded.
  void noteTable(std::vector<RawProcess> table);

  // Keeps an answer that differs from what a replay would give without it.
  template <typename Answer>
  void noteAbout(std::int32_t pid, Answer ProcessAnswers::*question, const Answer& answer) {
    const std::lock_guard lock(mutex_);
    ProcessAnswers answers = known_.about(pid);
    if (answers.*question == answer) return;
    answers.*question = answer;
    LastingAnswers told;
    told.about.emplace(pid, std::move(answers));
    learn(told);
  }
  template <typename Key, typename Answer>
  void noteLasting(std::map<Key, std::optional<Answer>> LastingAnswers::*question, const Key& key,
                   const std::optional<Answer>& answer) {
    const std::lock_guard lock(mutex_);
    if (knownAnswer(known_.standing().*question, key) == answer) return;
    LastingAnswers told;
    (told.*question).emplace(key, answer);
    learn(told);
  }
  void notePowerLog(const std::string& log);

 private:
  void learn(const LastingAnswers& told);
  void writeTick();

  std::mutex mutex_;
  std::shared_ptr<RecordingWriter> writer_;
  RecordedTick tick_;
  KnownAnswers known_;
  std::vector<RawProcess> table_;  // the newest that was read
};

}  // namespace embrix
