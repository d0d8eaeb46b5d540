#include "sampling/process_grouper.h"

#include <string>
#include <utility>

#include "running/friendly_name.h"

namespace embrix {
namespace {

// Marks in place of a place in the table.
constexpr std::int32_t kNone = -1;
constexpr std::int32_t kOnChain = -2;  // its root is being looked for right now

// The pids of the kernel and of the first process, which starts everything and owns nothing.
constexpr std::int32_t kLastSystemPID = 1;

// No real chain is this long; a climb that gets here is stopped where it stands.
constexpr std::size_t kLongestChain = 64;

// Derived names that are remembered at once. A table has a few dozen; one that makes up new names
// at every tick must not grow the memory.
constexpr std::size_t kMostDerivedNames = 1024;

const GroupIdentity& systemIdentity() {
  static const GroupIdentity identity{
      .key = "system", .name = "System", .rootPID = 1, .app = std::nullopt};
  return identity;
}

}  // namespace

const GroupIdentity* ProcessGroups::find(std::int32_t pid) const {
  const std::optional<std::size_t> place = index_.find(pid);
  return place ? &identity(*place) : nullptr;
}

void ProcessGroups::begin(std::size_t samples) {
  identityOfSample_.resize(samples);
  keyNumberOfIdentity_.clear();
  keyNumbers_.clear();
  count_ = 0;
}

GroupIdentity& ProcessGroups::add() {
  if (count_ == identities_.size()) identities_.emplace_back();
  return identities_[count_++];
}

ProcessGrouper::ProcessGrouper(App app, Responsible responsible)
    : app_(std::move(app)), responsible_(std::move(responsible)) {}

const ProcessGroups& ProcessGrouper::groups(const std::vector<ProcessSample>& samples) {
  groups_.begin(samples.size());
  groups_.index_.rebuild(samples);
  known_.assign(samples.size(), Known{kNone, kNone, kNone});
  const bool hasRepeats = groups_.index_.hasRepeats();
  for (std::size_t i = 0; i < samples.size(); ++i) {
    const Place place = hasRepeats ? placeOf(samples[i].pid) : static_cast<Place>(i);
    const std::int32_t identity = identityForRoot(samples, rootOf(samples, place));
    groups_.identityOfSample_[i] = static_cast<std::uint32_t>(identity);
  }
  return groups_;
}

ProcessGrouper::Place ProcessGrouper::placeOf(std::int32_t pid) const {
  const std::optional<std::size_t> place = groups_.index_.find(pid);
  return place ? static_cast<Place>(*place) : kNone;
}

// Climbs from parent to parent to the oldest ancestor below the first process.
ProcessGrouper::Place ProcessGrouper::rootOf(const Samples& samples, Place place) {
  chain_.clear();
  Place current = place;
  while (true) {
    Known& known = known_[static_cast<std::size_t>(current)];
    if (known.root >= 0) {
      current = known.root;
      break;
    }
    chain_.push_back(current);
    known.root = kOnChain;
    const ProcessSample& sample = samples[static_cast<std::size_t>(current)];
    if (sample.ppid <= kLastSystemPID || sample.ppid == sample.pid) break;
    const Place parent = placeOf(sample.ppid);
    if (parent == kNone) break;
    if (known_[static_cast<std::size_t>(parent)].root == kOnChain) break;  // a loop
    current = parent;
    if (chain_.size() == kLongestChain) break;
  }
  for (const Place link : chain_) known_[static_cast<std::size_t>(link)].root = current;
  return current;
}

std::int32_t ProcessGrouper::identityForRoot(const Samples& samples, Place root) {
  const auto rootIndex = static_cast<std::size_t>(root);
  if (known_[rootIndex].identityOfChildren >= 0) return known_[rootIndex].identityOfChildren;
  std::optional<AppInfo> app = app_(samples[rootIndex]);
  const Place top = app ? root : responsibleRoot(samples, root);
  const auto topIndex = static_cast<std::size_t>(top);
  std::int32_t& identity = known_[topIndex].identityOfTop;
  if (identity < 0) {
    if (top != root) app = app_(samples[topIndex]);
    identity = makeIdentity(samples[topIndex], std::move(app));
  }
  known_[rootIndex].identityOfChildren = identity;
  return identity;
}

// Where a helper belongs that was started for an application without being its child.
ProcessGrouper::Place ProcessGrouper::responsibleRoot(const Samples& samples, Place root) {
  const std::int32_t rootPID = samples[static_cast<std::size_t>(root)].pid;
  const std::optional<std::int32_t> pid = responsible_(rootPID);
  if (!pid || *pid == rootPID) return root;
  const Place place = placeOf(*pid);
  return place == kNone ? root : rootOf(samples, place);
}

// Writes down a new identity and gives its index.
std::int32_t ProcessGrouper::makeIdentity(const ProcessSample& top, std::optional<AppInfo> app) {
  const auto index = static_cast<std::int32_t>(groups_.count_);
  GroupIdentity& identity = groups_.add();
  if (top.uid == 0 && !app) {
    identity = systemIdentity();
  } else {
    identity.rootPID = top.pid;
    if (app && app->bundleID) {
      identity.key = *app->bundleID;
      identity.name = app->name;
    } else {
      const Friendly shown = friendly(top.name);
      identity.key = shown.key.empty() ? top.path.value_or(top.name) : shown.key;
      identity.name = app ? app->name : shown.name;
    }
    identity.app = std::move(app);
  }
  const auto number = static_cast<std::uint32_t>(groups_.keyNumbers_.size());
  const auto entry = groups_.keyNumbers_.try_emplace(identity.key, number).first;
  groups_.keyNumberOfIdentity_.push_back(entry->second);
  return index;
}

// Forms that are not in the table of names are made once and remembered from tick to tick.
ProcessGrouper::Friendly ProcessGrouper::friendly(const SharedText& processName) {
  if (const FriendlyName::Row* row = FriendlyName::row(processName)) {
    return {.name = row->displayName, .key = row->groupKey};
  }
  const auto remembered = derived_.find(processName);
  if (remembered != derived_.end()) return remembered->second;
  SharedText name = FriendlyName::name(processName);
  if (name == processName) return {.name = std::move(name), .key = {}};
  if (derived_.size() == kMostDerivedNames) derived_.clear();
  SharedText key = FriendlyName::groupKey(name);
  return derived_.try_emplace(processName, Friendly{std::move(name), std::move(key)}).first->second;
}

}  // namespace embrix
