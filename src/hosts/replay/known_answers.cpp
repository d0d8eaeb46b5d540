#include "hosts/replay/known_answers.h"

#include <utility>

namespace embrix {

namespace {

template <typename Key, typename Answer>
void learnEach(const std::map<Key, Answer>& told, std::map<Key, Answer>& known) {
  for (const auto& [key, answer] : told) known.insert_or_assign(key, answer);
}

}  // namespace

void learnAnswers(const LastingAnswers& told, LastingAnswers& known) {
  learnEach(told.about, known.about);
  learnEach(told.bundles, known.bundles);
  learnEach(told.programs, known.programs);
  learnEach(told.applicationPaths, known.applicationPaths);
  learnEach(told.smc, known.smc);
  learnEach(told.commandOutputs, known.commandOutputs);
  learnEach(told.commandStarts, known.commandStarts);
  learnEach(told.files, known.files);
  learnEach(told.resolvedPaths, known.resolvedPaths);
  learnEach(told.existing, known.existing);
  learnEach(told.fileFacts, known.fileFacts);
  learnEach(told.folderLists, known.folderLists);
  learnEach(told.folderSizes, known.folderSizes);
  if (told.powerLog) known.powerLog = told.powerLog;
}

void KnownAnswers::tableIs(const std::vector<RawProcess>& table) {
  std::swap(startTimes_, before_);
  startTimes_.clear();
  for (const RawProcess& process : table) startTimes_[process.pid] = process.startTime;
  std::erase_if(standing_.about, [&](const auto& entry) {
    const auto now = startTimes_.find(entry.first);
    if (now == startTimes_.end()) return true;
    const auto then = before_.find(entry.first);
    return then != before_.end() && then->second != now->second;
  });
}

ProcessAnswers KnownAnswers::about(std::int32_t pid) const {
  const auto entry = standing_.about.find(pid);
  return entry == standing_.about.end() ? ProcessAnswers{} : entry->second;
}

}  // namespace embrix
