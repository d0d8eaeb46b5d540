#include "running/forgotten_finder.h"

#include <algorithm>
#include <array>
#include <limits>

#include "base/hash_map.h"
#include "base/text.h"

namespace embrix {

namespace {

using Description = ForgottenFinder::Description;

// A process that may stand in a row, with what the rules ask about it again and again.
struct Survivor {
  const ProcessFacts* facts = nullptr;
  std::optional<Description> description;
  std::string lowerName;
};

// Survivors are told apart by their place in a list that ascends by pid.
constexpr std::size_t kNone = std::numeric_limits<std::size_t>::max();

bool isShell(std::string_view name) {
  constexpr std::array<std::string_view, 8> kShells = {"zsh",   "bash", "fish",   "sh",
                                                       "login", "tmux", "screen", "ssh-agent"};
  return std::find(kShells.begin(), kShells.end(), name) != kShells.end();
}

bool isAgent(std::string_view lowerName) {
  return lowerName == "claude" || lowerName == "codex";
}

bool isRuntime(std::string_view lowerName) {
  return lowerName == "node" || lowerName == "bun" || lowerName == "deno";
}

// A known tool stays even inside an application's folder; a program that nobody knows must listen
// and be no application.
bool stays(const ProcessFacts& process, bool isKnownTool) {
  if (isKnownTool) return true;
  if (process.ports.empty()) return false;
  return !process.path || process.path->find(".app/") == std::string::npos;
}

std::vector<Survivor> survivorsByPID(const std::vector<ProcessFacts>& facts,
                                     std::uint32_t currentUser,
                                     const SystemFolders& systemFolders) {
  std::vector<Survivor> survivors;
  for (const ProcessFacts& process : facts) {
    if (process.uid != currentUser || !(process.uptime >= ForgottenFinder::kLeastUptime)) continue;
    if (isShell(process.name) || systemFolders.hold(process)) continue;
    auto description = ForgottenFinder::describe(process);
    if (!stays(process, description.has_value())) continue;
    survivors.push_back({&process, std::move(description), Text::lowercased(process.name)});
  }
  std::stable_sort(survivors.begin(), survivors.end(), [](const Survivor& a, const Survivor& b) {
    return a.facts->pid < b.facts->pid;
  });
  const auto isSamePID = [](const Survivor& a, const Survivor& b) {
    return a.facts->pid == b.facts->pid;
  };
  survivors.erase(std::unique(survivors.begin(), survivors.end(), isSamePID), survivors.end());
  return survivors;
}

// The place of each survivor's parent, or kNone when that is no survivor.
std::vector<std::size_t> parentsOf(const std::vector<Survivor>& survivors) {
  std::vector<std::size_t> parents;
  parents.reserve(survivors.size());
  for (const Survivor& survivor : survivors) {
    const std::int32_t ppid = survivor.facts->ppid;
    const auto found =
        std::lower_bound(survivors.begin(), survivors.end(), ppid,
                         [](const Survivor& a, std::int32_t pid) { return a.facts->pid < pid; });
    const bool hasParent = found != survivors.end() && found->facts->pid == ppid;
    parents.push_back(hasParent ? static_cast<std::size_t>(found - survivors.begin()) : kNone);
  }
  return parents;
}

// Whether a process is only a piece of what its parent is.
bool belongsTo(const Survivor& parent, const Survivor& child) {
  if (!child.description) return true;
  if (child.facts->name == parent.facts->name) return true;
  if (isAgent(parent.lowerName)) {
    return isRuntime(child.lowerName) || child.lowerName.starts_with("python");
  }
  return isRuntime(child.lowerName) && isRuntime(parent.lowerName);
}

std::size_t rootOf(std::size_t start, const std::vector<Survivor>& survivors,
                   const std::vector<std::size_t>& parents) {
  // Also what ends a circle of parents, down to a process that is its own.
  constexpr int kStepsUp = 16;
  std::size_t current = start;
  for (int step = 0; step < kStepsUp; ++step) {
    const std::size_t parent = parents[current];
    if (parent == kNone || !belongsTo(survivors[parent], survivors[current])) break;
    current = parent;
  }
  return current;
}

// For each root the places of its group, ascending; empty for all who are no root. A process at
// which somebody's walk ended heads a group of its own, even where its own walk would have gone on
// (the walks have a budget): so nobody stands in two groups.
std::vector<std::vector<std::size_t>> groupsByRoot(const std::vector<Survivor>& survivors) {
  const auto parents = parentsOf(survivors);
  std::vector<std::size_t> roots(survivors.size());
  std::vector<bool> isRoot(survivors.size(), false);
  for (std::size_t i = 0; i < survivors.size(); ++i) {
    roots[i] = rootOf(i, survivors, parents);
    isRoot[roots[i]] = true;
  }
  std::vector<std::vector<std::size_t>> groups(survivors.size());
  for (std::size_t i = 0; i < survivors.size(); ++i) groups[isRoot[i] ? i : roots[i]].push_back(i);
  return groups;
}

void sortUnique(std::vector<int>& ports) {
  std::sort(ports.begin(), ports.end());
  ports.erase(std::unique(ports.begin(), ports.end()), ports.end());
}

// `chain` is the root followed by the others.
ForgottenItem itemOf(const std::vector<const Survivor*>& chain, std::string_view home) {
  const ProcessFacts& root = *chain.front()->facts;
  const auto described = std::find_if(chain.begin(), chain.end(), [](const Survivor* survivor) {
    return survivor->description.has_value();
  });
  ForgottenItem item;
  item.title = root.name;
  item.symbol = "terminal";
  std::optional<std::string> directory = root.directory;
  if (described != chain.end()) {
    item.title = (*described)->description->title;
    item.symbol = (*described)->description->symbol;
    if ((*described)->facts->directory) directory = (*described)->facts->directory;
  }
  item.project = ForgottenFinder::project(directory, home);
  for (const Survivor* survivor : chain) {
    const ProcessFacts& process = *survivor->facts;
    item.ports.insert(item.ports.end(), process.ports.begin(), process.ports.end());
    item.members.push_back(process);
  }
  sortUnique(item.ports);
  item.uptime = root.uptime;
  item.root = root;
  return item;
}

// By ascending pid of the root, without the agents themselves: a session that somebody talks to is
// not forgotten, and what folded into it goes with it.
std::vector<ForgottenItem> itemsOf(const std::vector<Survivor>& survivors, std::string_view home) {
  const auto groups = groupsByRoot(survivors);
  std::vector<ForgottenItem> items;
  for (std::size_t root = 0; root < survivors.size(); ++root) {
    if (groups[root].empty() || isAgent(survivors[root].lowerName)) continue;
    std::vector<const Survivor*> chain = {&survivors[root]};
    for (const std::size_t member : groups[root]) {
      if (member != root) chain.push_back(&survivors[member]);
    }
    items.push_back(itemOf(chain, home));
  }
  return items;
}

// Folds rows that read the same into the first of them: three `npm run dev` in one project are one
// row.
std::vector<ForgottenItem> merged(std::vector<ForgottenItem> items) {
  std::vector<ForgottenItem> rows;
  HashMap<std::string, std::size_t> rowByKey;
  for (ForgottenItem& item : items) {
    const auto [entry, isNew] =
        rowByKey.try_emplace(item.title + "|" + item.project.value_or(""), rows.size());
    if (isNew) {
      rows.push_back(std::move(item));
      continue;
    }
    ForgottenItem& row = rows[entry->second];
    row.ports.insert(row.ports.end(), item.ports.begin(), item.ports.end());
    std::move(item.members.begin(), item.members.end(), std::back_inserter(row.members));
    row.uptime = std::max(row.uptime, item.uptime);
  }
  for (ForgottenItem& row : rows) sortUnique(row.ports);
  return rows;
}

}  // namespace

std::vector<ForgottenItem> ForgottenFinder::find(const std::vector<ProcessFacts>& facts,
                                                 std::uint32_t currentUser, std::string_view home,
                                                 const SystemFolders& systemFolders) {
  auto rows = merged(itemsOf(survivorsByPID(facts, currentUser, systemFolders), home));
  std::stable_sort(rows.begin(), rows.end(),
                   [](const auto& a, const auto& b) { return a.uptime > b.uptime; });
  return rows;
}

}  // namespace embrix
