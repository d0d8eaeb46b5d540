// The rules of grouping written down as plainly as they are told, slow and without any state that
// lives on: what the real grouper is held against.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <utility>
#include <vector>

#include "frame/group_identity.h"
#include "frame/process_sample.h"
#include "running/friendly_name.h"

namespace embrix {

class PlainGrouper {
 public:
  using App = std::function<std::optional<AppInfo>(const ProcessSample&)>;
  using Responsible = std::function<std::optional<std::int32_t>(std::int32_t)>;

  PlainGrouper(App app, Responsible responsible)
      : app_(std::move(app)), responsible_(std::move(responsible)) {}

  std::map<std::int32_t, GroupIdentity> groups(const std::vector<ProcessSample>& samples) {
    samples_.clear();
    roots_.clear();
    identities_.clear();
    for (const ProcessSample& sample : samples) samples_.emplace(sample.pid, sample);
    std::map<std::int32_t, GroupIdentity> groups;
    for (const ProcessSample& sample : samples) {
      groups.emplace(sample.pid, identityForRoot(root(sample.pid)));
    }
    return groups;
  }

 private:
  std::int32_t root(std::int32_t pid) {
    if (roots_.contains(pid)) return roots_.at(pid);
    std::vector<std::int32_t> chain;
    std::int32_t current = pid;
    while (samples_.contains(current)) {
      if (roots_.contains(current)) {
        current = roots_.at(current);
        break;
      }
      chain.push_back(current);
      const std::int32_t parent = samples_.at(current).ppid;
      if (parent < 2 || parent == current) break;
      if (!samples_.contains(parent)) break;
      if (std::find(chain.begin(), chain.end(), parent) != chain.end()) break;
      if (chain.size() > 63) {
        current = parent;
        break;
      }
      current = parent;
    }
    for (const std::int32_t link : chain) roots_[link] = current;
    return current;
  }

  GroupIdentity identityForRoot(std::int32_t asked) {
    if (identities_.contains(asked)) return identities_.at(asked);
    std::int32_t effective = asked;
    if (samples_.contains(asked) && !app_(samples_.at(asked))) {
      const std::optional<std::int32_t> responsible = responsible_(asked);
      if (responsible && *responsible != asked && samples_.contains(*responsible)) {
        effective = root(*responsible);
      }
    }
    identities_[asked] = identityOf(effective);
    return identities_.at(asked);
  }

  GroupIdentity identityOf(std::int32_t pid) {
    const GroupIdentity system{.key = "system", .name = "System", .rootPID = 1, .app = {}};
    if (!samples_.contains(pid)) return system;
    const ProcessSample& sample = samples_.at(pid);
    const std::optional<AppInfo> app = app_(sample);
    if (sample.uid == 0 && !app) return system;
    if (app && app->bundleID) {
      return {.key = *app->bundleID, .name = app->name, .rootPID = pid, .app = app};
    }
    const SharedText friendly = FriendlyName::name(sample.name);
    SharedText key = sample.path.value_or(sample.name);
    if (friendly != sample.name) key = "named:" + friendly.string();
    return {.key = key, .name = app ? app->name : friendly, .rootPID = pid, .app = app};
  }

  App app_;
  Responsible responsible_;
  std::map<std::int32_t, ProcessSample> samples_;
  std::map<std::int32_t, std::int32_t> roots_;
  std::map<std::int32_t, GroupIdentity> identities_;
};

}  // namespace embrix
