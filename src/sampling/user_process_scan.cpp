#include "sampling/user_process_scan.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "base/hash_map.h"
#include "running/forgotten_finder.h"
#include "running/local_servers.h"

namespace embrix {

namespace {

bool isCandidate(const ProcessSample& sample, const UserFacts& user,
                 const SystemFolders& systemFolders) {
  return sample.uid == user.uid && sample.path && !systemFolders.holdCandidate(*sample.path);
}

std::vector<ProcessFacts> detailedFacts(const std::vector<ProcessSample>& samples,
                                        const UserFacts& user, const SystemFolders& systemFolders,
                                        ProcessDetailsReader& details, double now) {
  std::vector<ProcessFacts> facts;
  HashSet<SharedText> ids;
  details.beginScan();
  for (const ProcessSample& sample : samples) {
    if (!isCandidate(sample, user, systemFolders)) continue;
    facts.push_back(details.facts(sample, sample.id, now));
    ids.insert(sample.id);
  }
  details.prune(ids);
  return facts;
}

// What is known of a process without asking, but for the arguments of a simulator's root, which
// name its device.
ProcessFacts plainFacts(const ProcessSample& sample, ProcessDetailsReader& details, double now) {
  ProcessFacts facts;
  facts.id = sample.id;
  facts.pid = sample.pid;
  facts.ppid = sample.ppid;
  facts.uid = sample.uid;
  facts.name = sample.name;
  facts.path = sample.path;
  if (facts.name == SimulatorFinder::kRootName) facts.arguments = details.arguments(sample.pid);
  facts.uptime = now - static_cast<double>(sample.startTime);
  return facts;
}

// Every process of the user in the order of the samples, detailed where `detailed` knows its pid.
std::vector<ProcessFacts> allUserFacts(const std::vector<ProcessSample>& samples,
                                       const UserFacts& user,
                                       const std::vector<ProcessFacts>& detailed,
                                       ProcessDetailsReader& details, double now) {
  HashMap<std::int32_t, std::size_t> detailedByPID;
  for (std::size_t i = 0; i < detailed.size(); ++i) detailedByPID.try_emplace(detailed[i].pid, i);
  std::vector<ProcessFacts> facts;
  for (const ProcessSample& sample : samples) {
    if (sample.uid != user.uid) continue;
    const auto known = detailedByPID.find(sample.pid);
    facts.push_back(known != detailedByPID.end() ? detailed[known->second]
                                                 : plainFacts(sample, details, now));
  }
  return facts;
}

bool hasSimulator(const std::vector<ProcessSample>& samples, const UserFacts& user) {
  return std::any_of(samples.begin(), samples.end(), [&](const ProcessSample& sample) {
    return sample.uid == user.uid && sample.name == SimulatorFinder::kRootName;
  });
}

}  // namespace

UserProcessScan::Result UserProcessScan::run(const std::vector<ProcessSample>& samples,
                                             const UserFacts& user,
                                             const SystemFolders& systemFolders,
                                             ProcessDetailsReader& details,
                                             const SimulatorFinder::DeviceReader& device,
                                             double now) {
  const auto detailed = detailedFacts(samples, user, systemFolders, details, now);
  // The finder leaves out by itself what has not run for long.
  auto tools = ForgottenFinder::find(detailed, user.uid, user.homeDirectory, systemFolders);
  Result result;
  result.servers = LocalServers::find(detailed, user.uid, user.homeDirectory, systemFolders);
  // The facts of every other process are wanted for what runs below a simulator's root alone.
  if (hasSimulator(samples, user)) {
    const auto facts = allUserFacts(samples, user, detailed, details, now);
    result.forgotten = SimulatorFinder::find(facts, user.uid, device);
  }
  std::move(tools.begin(), tools.end(), std::back_inserter(result.forgotten));
  return result;
}

}  // namespace embrix
