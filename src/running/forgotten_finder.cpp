#include "running/forgotten_finder.h"

#include <algorithm>
#include <array>
#include <limits>
#include <numeric>
#include <span>
#include <utility>

#include "base/hash_map.h"
#include "base/text.h"

namespace embrix {

namespace {

using Description = ForgottenFinder::Description;

// A process that may stand in a row, with what the rules ask about it again and again.
struct Survivor {
  const ProcessFacts* facts = nullptr;
  std::optional<Description> description;
  // By its lower-cased name.
  bool isAgent = false;
  bool isRuntime = false;
  bool isPython = false;
};

// Survivors are told apart by their place in a list that ascends by pid.
constexpr std::size_t kNone = std::numeric_limits<std::size_t>::max();

bool isShell(std::string_view name) {
  constexpr std::array<std::string_view, 8> kShells = {"zsh",   "bash", "fish",   "sh",
                                                       "login", "tmux", "screen", "ssh-agent"};
  return std::find(kShells.begin(), kShells.end(), name) != kShells.end();
}

Survivor survivorOf(const ProcessFacts& process) {
  const std::string name = Text::lowercased(process.name);
  return {.facts = &process,
          .description = ForgottenFinder::describe(process, name),
          .isAgent = name == "claude" || name == "codex",
          .isRuntime = name == "node" || name == "bun" || name == "deno",
          .isPython = name.starts_with("python")};
}

// A known tool stays even inside an application's folder; a program that nobody knows must listen
// and be no application.
bool stays(const Survivor& candidate) {
  if (candidate.description) return true;
  const ProcessFacts& process = *candidate.facts;
  if (process.ports.empty()) return false;
  return !process.path || process.path->view().find(".app/") == std::string_view::npos;
}

std::vector<Survivor> survivorsByPID(const std::vector<ProcessFacts>& facts,
                                     std::uint32_t currentUser,
                                     const SystemFolders& systemFolders) {
  std::vector<Survivor> survivors;
  survivors.reserve(facts.size());
  for (const ProcessFacts& process : facts) {
    if (process.uid != currentUser || !(process.uptime >= ForgottenFinder::kLeastUptime)) continue;
    if (isShell(process.name) || systemFolders.hold(process)) continue;
    Survivor candidate = survivorOf(process);
    if (stays(candidate)) survivors.push_back(std::move(candidate));
  }
  const auto pidOf = [](const Survivor& survivor) { return survivor.facts->pid; };
  const auto isBefore = [&](const auto& a, const auto& b) { return pidOf(a) < pidOf(b); };
  const auto isSamePID = [&](const auto& a, const auto& b) { return pidOf(a) == pidOf(b); };
  // A process table mostly ascends as it is.
  if (!std::is_sorted(survivors.begin(), survivors.end(), isBefore)) {
    std::stable_sort(survivors.begin(), survivors.end(), isBefore);
  }
  survivors.erase(std::unique(survivors.begin(), survivors.end(), isSamePID), survivors.end());
  return survivors;
}

// The place of each survivor's parent, or kNone when that is no survivor.
std::vector<std::size_t> parentsOf(const std::vector<Survivor>& survivors) {
  std::vector<std::int32_t> pids;
  pids.reserve(survivors.size());
  for (const Survivor& survivor : survivors) pids.push_back(survivor.facts->pid);
  std::vector<std::size_t> parents;
  parents.reserve(survivors.size());
  for (const Survivor& survivor : survivors) {
    const auto found = std::lower_bound(pids.begin(), pids.end(), survivor.facts->ppid);
    const bool hasParent = found != pids.end() && *found == survivor.facts->ppid;
    parents.push_back(hasParent ? static_cast<std::size_t>(found - pids.begin()) : kNone);
  }
  return parents;
}

// Whether a process is only a piece of what its parent is.
bool belongsTo(const Survivor& parent, const Survivor& child) {
  if (!child.description) return true;
  if (child.facts->name == parent.facts->name) return true;
  if (parent.isAgent) return child.isRuntime || child.isPython;
  return child.isRuntime && parent.isRuntime;
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

// All survivors' places, group by group: ascending by the root, which stands first, the others
// behind it ascending.
struct Groups {
  std::vector<std::size_t> places;
  std::vector<std::size_t> starts;  // where each root's group begins; empty for all who are no root

  std::span<const std::size_t> of(std::size_t root) const {
    return std::span(places).subspan(starts[root], starts[root + 1] - starts[root]);
  }
};

// A process at which somebody's walk ended heads a group of its own, even where its own walk would
// have gone on (the walks have a budget): so nobody stands in two groups.
Groups groupsOf(const std::vector<Survivor>& survivors) {
  const auto parents = parentsOf(survivors);
  std::vector<std::size_t> roots(survivors.size());
  std::vector<bool> isRoot(survivors.size(), false);
  for (std::size_t i = 0; i < survivors.size(); ++i) {
    roots[i] = rootOf(i, survivors, parents);
    isRoot[roots[i]] = true;
  }

  Groups groups{.places = std::vector<std::size_t>(survivors.size()),
                .starts = std::vector<std::size_t>(survivors.size() + 1, 0)};
  for (std::size_t i = 0; i < survivors.size(); ++i) {
    if (isRoot[i]) roots[i] = i;
    groups.starts[roots[i] + 1] += 1;
  }
  std::partial_sum(groups.starts.begin(), groups.starts.end(), groups.starts.begin());
  std::vector<std::size_t> next = groups.starts;
  for (std::size_t i = 0; i < survivors.size(); ++i) {
    if (isRoot[i]) groups.places[next[i]++] = i;
  }
  for (std::size_t i = 0; i < survivors.size(); ++i) {
    if (!isRoot[i]) groups.places[next[roots[i]]++] = i;
  }
  return groups;
}

// The root followed by the others of its group.
using Chain = std::span<const std::size_t>;

// A row without members and ports, as the first named process of the chain tells it.
ForgottenItem emptyRowOf(Chain chain, const std::vector<Survivor>& survivors,
                         std::string_view home) {
  const ProcessFacts& root = *survivors[chain.front()].facts;
  const auto named = std::find_if(chain.begin(), chain.end(), [&](std::size_t place) {
    return survivors[place].description.has_value();
  });
  ForgottenItem row;
  const std::optional<SharedText>* directory = &root.directory;
  if (named == chain.end()) {
    row.title = root.name.string();
    row.symbol = "terminal";
  } else {
    const Survivor& survivor = survivors[*named];
    row.title = survivor.description->title;
    row.symbol = survivor.description->symbol;
    if (survivor.facts->directory) directory = &survivor.facts->directory;
  }
  row.project = ForgottenFinder::project(*directory, home);
  return row;
}

void addTo(ForgottenItem& row, Chain chain, const std::vector<Survivor>& survivors) {
  row.uptime = std::max(row.uptime, survivors[chain.front()].facts->uptime);
  for (const std::size_t place : chain) {
    const ProcessFacts& process = *survivors[place].facts;
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
  const Groups groups = groupsOf(survivors);
  std::vector<ForgottenItem> rows;
  HashMap<SharedText, std::size_t> rowByKey;
  std::string key;
  for (std::size_t root = 0; root < survivors.size(); ++root) {
    const Chain chain = groups.of(root);
    if (chain.empty() || survivors[root].isAgent) continue;
    ForgottenItem row = emptyRowOf(chain, survivors, home);
    key.assign(row.title).append("|").append(row.project.value_or(""));
    auto known = rowByKey.find(std::string_view(key));
    if (known == rowByKey.end()) {
      known = rowByKey.emplace(SharedText(key), rows.size()).first;
      row.root = *survivors[root].facts;
      row.members.reserve(chain.size());
      rows.push_back(std::move(row));
    }
    addTo(rows[known->second], chain, survivors);
  }
  for (ForgottenItem& row : rows) sortUnique(row.ports);
  return rows;
}

// Rows are large: their places are sorted, and each row moves once.
std::vector<ForgottenItem> byDescendingUptime(std::vector<ForgottenItem> rows) {
  std::vector<std::size_t> places(rows.size());
  std::iota(places.begin(), places.end(), std::size_t{0});
  std::stable_sort(places.begin(), places.end(),
                   [&](std::size_t a, std::size_t b) { return rows[a].uptime > rows[b].uptime; });
  std::vector<ForgottenItem> sorted;
  sorted.reserve(rows.size());
  for (const std::size_t place : places) sorted.push_back(std::move(rows[place]));
  return sorted;
}

}  // namespace

std::vector<ForgottenItem> ForgottenFinder::find(const std::vector<ProcessFacts>& facts,
                                                 std::uint32_t currentUser, std::string_view home,
                                                 const SystemFolders& systemFolders) {
  return byDescendingUptime(rowsOf(survivorsByPID(facts, currentUser, systemFolders), home));
}

}  // namespace embrix
