#include "sampling/process_roles.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <tuple>
#include <utility>

#include "base/text.h"
#include "running/friendly_name.h"

namespace embrix {
namespace {

constexpr std::string_view kMainApp = "Main app";
constexpr std::string_view kWebContent = "Web content";
constexpr std::string_view kGraphics = "Graphics";
constexpr std::string_view kPlugins = "Plugins";
constexpr std::string_view kNotifications = "Notifications";
constexpr std::string_view kNetworking = "Networking";
constexpr std::string_view kCrashReporter = "Crash reporter";
constexpr std::string_view kHelpers = "Helpers";

struct Hint {
  std::string_view part;
  std::string_view role;
};

constexpr Hint kWebKitHints[] = {
    {"webcontent", kWebContent}, {"gpu", kGraphics}, {"networking", kNetworking}};

constexpr Hint kHelperHints[] = {
    {"renderer", kWebContent}, {"gpu", kGraphics}, {"plugin", kPlugins}, {"alert", kNotifications}};

constexpr Hint kSymbols[] = {{kMainApp, "macwindow"},
                             {kWebContent, "doc.richtext"},
                             {kGraphics, "cpu"},
                             {kPlugins, "puzzlepiece.extension"},
                             {kNotifications, "bell"},
                             {kNetworking, "network"},
                             {kCrashReporter, "exclamationmark.triangle"}};

bool contains(std::string_view text, std::string_view part) {
  return text.find(part) != std::string_view::npos;
}

template <std::size_t Count>
std::optional<std::string> firstHint(const Hint (&hints)[Count], std::string_view text) {
  for (const auto& [part, role] : hints) {
    if (contains(text, part)) return std::string(role);
  }
  return std::nullopt;
}

// What stands between the first "(" and the first ")" behind it, empty when there is no such pair.
std::string_view bracketed(std::string_view text) {
  const std::size_t open = text.find('(');
  if (open == std::string_view::npos) return {};
  const std::string_view inside = text.substr(open + 1);
  const std::size_t close = inside.find(')');
  return close == std::string_view::npos ? std::string_view() : inside.substr(0, close);
}

// The role of a process whose name, without the app's, begins with "Helper".
std::string helperRole(std::string_view rest) {
  const std::string_view kind = bracketed(rest);
  if (kind.empty()) return std::string(kHelpers);
  if (auto known = firstHint(kHelperHints, Text::lowercased(kind))) return *known;
  return std::string(kHelpers) + " (" + std::string(kind) + ")";
}

struct Weight {
  double watts = 0;
  double memory = 0;  // bytes
};

Weight weigh(const ProcessRole& role) {
  Weight sum;
  for (const ProcessRow& row : role.processes) {
    sum.watts += row.watts;
    // In doubles: counters that no machine has must not wrap around.
    sum.memory += static_cast<double>(row.memoryBytes);
  }
  return sum;
}

}  // namespace

std::string ProcessRoles::role(const SharedText& process, std::string_view app) {
  const std::string_view name = process;
  const std::string lower = Text::lowercased(name);
  const std::string lowerApp = Text::lowercased(app);
  if (name == app || lower == lowerApp) return std::string(kMainApp);
  if (contains(lower, "crashpad") || lower.ends_with("crashreporter")) {
    return std::string(kCrashReporter);
  }
  if (lower.starts_with("com.apple.webkit.")) {
    if (auto known = firstHint(kWebKitHints, lower)) return *known;
  }
  std::string_view rest = name;
  if (lower.starts_with(lowerApp)) {
    rest = Text::withoutFirstCharacters(name, Text::characterCount(lowerApp));
  }
  rest = Text::trimmed(rest);
  if (rest.starts_with("Helper")) return helperRole(rest);
  return FriendlyName::name(process).string();
}

std::string_view ProcessRoles::symbol(std::string_view role) {
  for (const auto& [name, symbol] : kSymbols) {
    if (role == name) return symbol;
  }
  return role.starts_with(kHelpers) ? "gearshape.2" : "gearshape";
}

std::vector<ProcessRole> ProcessRoles::group(const std::vector<ProcessRow>& rows,
                                             std::string_view app) {
  std::map<std::string, std::vector<ProcessRow>> rowsByRole;
  for (const ProcessRow& row : rows) rowsByRole[role(row.name, app)].push_back(row);

  std::vector<std::pair<Weight, ProcessRole>> weighed;
  for (auto& [name, own] : rowsByRole) {
    std::stable_sort(own.begin(), own.end(),
                     [](const auto& a, const auto& b) { return a.watts > b.watts; });
    ProcessRole made{
        .name = name, .symbol = std::string(symbol(name)), .processes = std::move(own)};
    const Weight weight = weigh(made);
    weighed.emplace_back(weight, std::move(made));
  }
  // The map has the roles by name already.
  std::stable_sort(weighed.begin(), weighed.end(), [](const auto& a, const auto& b) {
    return std::tie(b.first.watts, b.first.memory) < std::tie(a.first.watts, a.first.memory);
  });

  std::vector<ProcessRole> roles;
  roles.reserve(weighed.size());
  for (auto& [weight, made] : weighed) roles.push_back(std::move(made));
  return roles;
}

}  // namespace embrix
