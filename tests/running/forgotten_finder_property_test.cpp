#include <map>
#include <set>

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include "plain_forgotten_finder.h"
#include "random_processes.h"
#include "running/forgotten_finder.h"
#include "running/local_servers.h"
#include "running/simulator_finder.h"

namespace embrix {
namespace {

std::vector<ForgottenItem> forgotten(const std::vector<ProcessFacts>& table) {
  return ForgottenFinder::find(table, kUser, kHome);
}

RC_GTEST_PROP(ForgottenFinderPropertyTest, AgreesWithThePlainRules, ()) {
  const auto table = *processTables();
  RC_ASSERT(forgotten(table) == PlainForgottenFinder(table, kUser, std::string(kHome)).find());
}

RC_GTEST_PROP(ForgottenFinderPropertyTest, NoProcessStandsInTwoRows, ()) {
  std::set<std::int32_t> seen;
  for (const ForgottenItem& item : forgotten(*processTables())) {
    RC_ASSERT(!item.members.empty());
    RC_ASSERT(item.members.front() == item.root);
    for (const ProcessFacts& member : item.members) RC_ASSERT(seen.insert(member.pid).second);
  }
}

RC_GTEST_PROP(ForgottenFinderPropertyTest, EveryMemberIsASurvivor, ()) {
  const auto table = *processTables();
  const PlainForgottenFinder plain(table, kUser, std::string(kHome));
  for (const ForgottenItem& item : forgotten(table)) {
    for (const ProcessFacts& member : item.members) {
      const auto survivor = plain.survivors().find(member.pid);
      RC_ASSERT(survivor != plain.survivors().end());
      RC_ASSERT(survivor->second == member);
    }
  }
}

RC_GTEST_PROP(ForgottenFinderPropertyTest, TheOrderOfTheTablePlaysNoPart, ()) {
  const auto table = *processTables();
  RC_ASSERT(forgotten(table) == forgotten(*shuffled(table)));
}

// Rows with one first port keep the order of the table; nothing else may depend on it.
RC_GTEST_PROP(LocalServersPropertyTest, RowsAscendByPortAndKeepTheOrderOfTheTable, ()) {
  const auto table = *processTables();
  std::map<std::int32_t, std::size_t> place;
  for (std::size_t i = 0; i < table.size(); ++i) place[table[i].pid] = i;
  const auto servers = LocalServers::find(table, kUser, kHome);
  for (std::size_t i = 0; i < servers.size(); ++i) {
    RC_ASSERT(servers[i].process == table[place.at(servers[i].process.pid)]);
    RC_ASSERT(servers[i].ports == servers[i].process.ports);
    if (i == 0) continue;
    const int before = servers[i - 1].ports.front();
    RC_ASSERT(before <= servers[i].ports.front());
    if (before == servers[i].ports.front()) {
      RC_ASSERT(place.at(servers[i - 1].process.pid) < place.at(servers[i].process.pid));
    }
  }
}

RC_GTEST_PROP(LocalServersPropertyTest, EveryForgottenListenerIsAServerUnlessItIsAnAgents, ()) {
  const auto table = *processTables();
  std::set<std::int32_t> servers;
  for (const LocalServer& server : LocalServers::find(table, kUser, kHome)) {
    RC_ASSERT(servers.insert(server.process.pid).second);
  }
  for (const ForgottenItem& item : forgotten(table)) {
    for (const ProcessFacts& member : item.members) {
      RC_ASSERT(member.ports.empty() || servers.count(member.pid) == 1);
    }
  }
}

RC_GTEST_PROP(SimulatorFinderPropertyTest, NoProcessStandsInTwoRows, ()) {
  const auto table = *processTables();
  const auto rows =
      SimulatorFinder::find(table, kUser, [](const std::string&) { return std::nullopt; });
  std::set<std::int32_t> seen;
  for (const ForgottenItem& row : rows) {
    RC_ASSERT(row.members.front() == row.root);
    RC_ASSERT(row.simulatorUDID.has_value());
    for (const ProcessFacts& member : row.members) RC_ASSERT(seen.insert(member.pid).second);
  }
}

}  // namespace
}  // namespace embrix
