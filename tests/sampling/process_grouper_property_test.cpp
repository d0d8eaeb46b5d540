#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include "plain_grouper.h"
#include "sampling/process_grouper.h"

namespace embrix {
namespace {

using Samples = std::vector<ProcessSample>;

// Few enough that chains, loops and repeats come about by themselves.
constexpr const char* kNames[] = {"node",   "swiftc", "swift-frontend",      "kernel_task",
                                  "zsh",    "mds",    "com.example.Updater", "com.example.abc",
                                  "helper", ""};

std::optional<AppInfo> appOf(const ProcessSample& sample) {
  if (!sample.path) return std::nullopt;
  const std::string path = sample.path->string();
  if (path.starts_with("/Apps/A")) {
    return AppInfo{.name = "A", .bundleID = "com.example.A", .bundlePath = "/Apps/A.app"};
  }
  if (path.starts_with("/Apps/B")) return AppInfo{.name = "B", .bundleID = {}, .bundlePath = {}};
  return std::nullopt;
}

rc::Gen<Samples> anyTable(std::int32_t largestPID) {
  const auto place = rc::gen::element<std::string>("/Apps/A.app/", "/Apps/B.app/", "/usr/bin/", "");
  const auto one = rc::gen::map(
      rc::gen::tuple(
          rc::gen::inRange(0, largestPID), rc::gen::inRange(-1, largestPID),
          rc::gen::element<std::uint32_t>(0, 501), place,
          rc::gen::elementOf(std::vector<std::string>(std::begin(kNames), std::end(kNames)))),
      [](const auto& fields) {
        const auto& [pid, ppid, uid, folder, name] = fields;
        ProcessSample made;
        made.pid = pid;
        made.ppid = ppid;
        made.uid = uid;
        made.name = name;
        if (!folder.empty()) made.path = folder + name;
        return made;
      });
  return rc::gen::container<Samples>(one);
}

// Each process the child of the one that is drawn for it among those a few places before, so that
// chains grow far beyond what is climbed.
rc::Gen<Samples> longChains() {
  return rc::gen::map(rc::gen::container<std::vector<int>>(200, rc::gen::inRange(1, 3)),
                      [](const auto& steps) {
                        Samples table;
                        for (std::size_t i = 0; i < steps.size(); ++i) {
                          ProcessSample made;
                          made.pid = 2 + static_cast<std::int32_t>(i);
                          made.ppid = made.pid - steps[i];
                          made.uid = 501;
                          made.name = "link";
                          table.push_back(made);
                        }
                        return table;
                      });
}

void agrees(ProcessGrouper& grouper, PlainGrouper& plain, const Samples& table) {
  const auto expected = plain.groups(table);
  const ProcessGroups& groups = grouper.groups(table);
  RC_ASSERT(groups.size() == table.size());
  std::map<SharedText, std::size_t> numbers;
  for (std::size_t i = 0; i < table.size(); ++i) {
    const GroupIdentity& identity = expected.at(table[i].pid);
    RC_ASSERT(groups.identity(i) == identity);
    RC_ASSERT(*groups.find(table[i].pid) == identity);
    const auto number = numbers.emplace(identity.key, numbers.size()).first;
    RC_ASSERT(groups.keyNumber(i) == number->second);
  }
  RC_ASSERT(groups.keyCount() == numbers.size());
}

// One grouper lives through all tables, as in the program, and the plain one starts anew at each.
RC_GTEST_PROP(ProcessGrouperPropertyTest, AgreesWithThePlainRules, ()) {
  const auto tables = *rc::gen::container<std::vector<Samples>>(3, anyTable(40));
  const auto responsible = *rc::gen::container<std::map<std::int32_t, std::int32_t>>(
      rc::gen::inRange(0, 40), rc::gen::inRange(0, 45));
  const auto lookup = [&](std::int32_t pid) -> std::optional<std::int32_t> {
    const auto found = responsible.find(pid);
    return found == responsible.end() ? std::nullopt : std::optional(found->second);
  };
  ProcessGrouper grouper(appOf, lookup);
  PlainGrouper plain(appOf, lookup);
  for (const Samples& table : tables) agrees(grouper, plain, table);
}

RC_GTEST_PROP(ProcessGrouperPropertyTest, AgreesWithThePlainRulesOnLongChains, ()) {
  Samples table = *longChains();
  const auto order = *rc::gen::container<std::vector<std::uint32_t>>(
      table.size(), rc::gen::arbitrary<std::uint32_t>());
  for (std::size_t i = 0; i < table.size(); ++i) {
    std::swap(table[i], table[order[i] % table.size()]);
  }
  const auto nobody = [](std::int32_t) { return std::optional<std::int32_t>(); };
  ProcessGrouper grouper(appOf, nobody);
  PlainGrouper plain(appOf, nobody);
  agrees(grouper, plain, table);
}

}  // namespace
}  // namespace embrix
