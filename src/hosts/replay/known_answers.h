// What has been told so far and still stands: what a replayed machine answers to a question that
// the tick has no answer to. A recording keeps the same, and writes down only what it would not
// give. One owner; no locks.
#pragma once

#include <cstdint>
#include <vector>

#include "base/hash_map.h"
#include "hosts/replay/recording_records.h"

namespace embrix {

// Each answer told takes the place of an earlier one to the same question.
void learnAnswers(const LastingAnswers& told, LastingAnswers& known);

class KnownAnswers {
 public:
  // Told each table that is read: forgets what was known of a process that is not in it, or was
  // started anew under its pid.
  void tableIs(const std::vector<RawProcess>& table);

  void learn(const LastingAnswers& told) { learnAnswers(told, standing_); }

  const LastingAnswers& standing() const { return standing_; }

  // All that is known of the process, with nothing in it for one that was not asked about.
  ProcessAnswers about(std::int32_t pid) const;

 private:
  LastingAnswers standing_;
  HashMap<std::int32_t, std::uint64_t> startTimes_;  // of the newest table
  HashMap<std::int32_t, std::uint64_t> before_;      // storage, used again
};

// Absent when nothing is known under the key.
template <typename Key, typename Answer>
std::optional<Answer> knownAnswer(const std::map<Key, std::optional<Answer>>& answers,
                                  const Key& key) {
  const auto entry = answers.find(key);
  return entry == answers.end() ? std::nullopt : entry->second;
}

}  // namespace embrix
