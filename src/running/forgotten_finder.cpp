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
  std::vector<const ProcessFacts*> old;
  for (const ProcessFacts& process : facts) {
    if (process.uid != currentUser || !(process.uptime >= ForgottenFinder::kLeastUptime)) continue;
    if (!isShell(process.name) && !systemFolders.hold(process)) old.push_back(&process);
  }
  std::stable_sort(old.begin(), old.end(),
                   [](const auto* a, const auto* b) { return a->pid < b->pid; });
  const auto isSamePID = [](const auto* a, const auto* b) { return a->pid == b->pid; };
  old.erase(std::unique(old.begin(), old.end(), isSamePID), old.end());

  std::vector<Survivor> survivors;
  survivors.reserve(old.size());
  for (const ProcessFacts* process : old) {
    auto description = ForgottenFinder::describe(*process);
    if (!stays(*process, description.has_value())) continue;
    survivors.push_back({process, std::move(description), Text::lowercased(process->name)});
  }
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

// The root followed by the others of its group.
using Chain = std::vector<const Survivor*>;

Chain chainOf(std::size_t root, const std::vector<std::size_t>& group,
              const std::vector<Survivor>& survivors) {
  Chain chain = {&survivors[root]};
  for (const std::size_t member : group) {
    if (member != root) chain.push_back(&survivors[member]);
  }
  return chain;
}

// A row without members and ports, as the first named process of the chain tells it.
ForgottenItem emptyRowOf(const Chain& chain, std::string_view home) {
  const ProcessFacts& root = *chain.front()->facts;
  const auto named = std::find_if(chain.begin(), chain.end(), [](const Survivor* survivor) {
    return survivor->description.has_value();
  });
  ForgottenItem row;
  row.title = root.name;
  row.symbol = "terminal";
  const std::optional<std::string>* directory = &root.directory;
  if (named != chain.end()) {
    row.title = (*named)->description->title;
    row.symbol = (*named)->description->symbol;
    if ((*named)->facts->directory) directory = &(*named)->facts->directory;
  }
  row.project = ForgottenFinder::project(*directory, home);
  return row;
}

void addTo(ForgottenItem& row, const Chain& chain) {
  row.uptime = std::max(row.uptime, chain.front()->facts->uptime);
  for (const Survivor* survivor : chain) {
    const ProcessFacts& process = *survivor->facts;
    row.ports.insert(row.ports.end(), process.ports.begin(), process.ports.end());
    row.members.push_back(process);
  }
}

void sortUnique(std::vector<int>& ports) {
  std::sort(ports.begin(), ports.end());
  ports.erase(std::unique(ports.begin(), ports.end()), ports.end());
}

// By ascending pid of the root. The agents themselves are left out: a session that somebody talks
// to is not forgotten, and what folded into it goes with it. Groups that read the same become one
// row with the first one's root: three `npm run dev` in one project are one thing to its owner.
std::vector<ForgottenItem> rowsOf(const std::vector<Survivor>& survivors, std::string_view home) {
  const auto groups = groupsByRoot(survivors);
  std::vector<ForgottenItem> rows;
  HashMap<std::string, std::size_t> rowByKey;
  for (std::size_t root = 0; root < survivors.size(); ++root) {
    if (groups[root].empty() || isAgent(survivors[root].lowerName)) continue;
    const Chain chain = chainOf(root, groups[root], survivors);
    ForgottenItem row = emptyRowOf(chain, home);
    const auto [entry, isNew] =
        rowByKey.try_emplace(row.title + "|" + row.project.value_or(""), rows.size());
    if (isNew) {
      row.root = *chain.front()->facts;
      row.members.reserve(chain.size());
      rows.push_back(std::move(row));
    }
    addTo(rows[entry->second], chain);
  }
  for (ForgottenItem& row : rows) sortUnique(row.ports);
  return rows;
}

}  // namespace

std::vector<ForgottenItem> ForgottenFinder::find(const std::vector<ProcessFacts>& facts,
                                                 std::uint32_t currentUser, std::string_view home,
                                                 const SystemFolders& systemFolders) {
  auto rows = rowsOf(survivorsByPID(facts, currentUser, systemFolders), home);
  std::stable_sort(rows.begin(), rows.end(),
                   [](const auto& a, const auto& b) { return a.uptime > b.uptime; });
  return rows;
}

}  // namespace embrix
