#include "sampling/process_details_reader.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "base/text.h"

namespace embrix {

namespace {

void sortUnique(std::vector<int>& numbers) {
  std::sort(numbers.begin(), numbers.end());
  numbers.erase(std::unique(numbers.begin(), numbers.end()), numbers.end());
}

}  // namespace

ProcessFacts ProcessDetailsReader::facts(const ProcessSample& sample, const SharedText& id,
                                         double now) {
  const Cached& known = cached(id, sample.pid);
  ProcessFacts facts;
  facts.id = id;
  facts.pid = sample.pid;
  facts.ppid = sample.ppid;
  facts.uid = sample.uid;
  facts.name = sample.name;
  facts.path = sample.path;
  facts.arguments = known.arguments;
  facts.directory = known.directory;
  for (const ListeningPort& listening : source_.listening(sample.pid)) {
    facts.ports.push_back(listening.port);
    if (listening.exposed) facts.exposedPorts.push_back(listening.port);
  }
  sortUnique(facts.ports);
  sortUnique(facts.exposedPorts);
  facts.uptime = now - static_cast<double>(sample.startTime);
  return facts;
}

std::vector<std::string> ProcessDetailsReader::arguments(std::int32_t pid) {
  std::vector<std::string> arguments = source_.arguments(pid);
  for (std::string& argument : arguments) argument = Text::repaired(argument);
  return arguments;
}

void ProcessDetailsReader::prune(const HashSet<SharedText>& keep) {
  for (auto entry = cache_.begin(); entry != cache_.end();) {
    entry = keep.contains(entry->first) ? std::next(entry) : cache_.erase(entry);
  }
}

const ProcessDetailsReader::Cached& ProcessDetailsReader::cached(const SharedText& id,
                                                                 std::int32_t pid) {
  auto entry = cache_.find(id);
  if (entry == cache_.end()) {
    Cached read{.arguments = arguments(pid), .directory = std::nullopt};
    const auto directory = source_.directory(pid);
    if (directory && !directory->empty()) read.directory = Text::repaired(*directory);
    entry = cache_.emplace(id, std::move(read)).first;
  }
  return entry->second;
}

}  // namespace embrix
