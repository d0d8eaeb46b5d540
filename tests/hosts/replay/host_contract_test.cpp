#include "fakes/host_contract.h"

#include <memory>

#include "recorded_worlds.h"

namespace embrix {
namespace {

void fillBare(ScriptedHost& world) {
  world.name = "linux";
  world.machine = {.systemName = "Linux"};
  world.hasSmc = false;
  world.failing.insert("smc");
  world.hasEnergyCounters = false;
  world.add(1, "/sbin/init", 0);
}

template <auto fill>
StandingHost scripted() {
  auto world = std::make_shared<ScriptedHost>();
  fill(*world);
  Host host = world->host();
  return {.world = world, .host = std::move(host), .questions = laptopQuestions()};
}

// As many interviews as the contract's longest case holds.
template <auto fill>
StandingHost replayed() {
  ScriptedHost world;
  fill(world);
  const std::string recording = recordedInterviews(world, laptopQuestions(), 3);
  return {.world = nullptr, .host = replayOf(recording).host, .questions = laptopQuestions()};
}

INSTANTIATE_TEST_SUITE_P(ScriptedLaptop, HostContract, testing::Values(scripted<fillLaptop>));
INSTANTIATE_TEST_SUITE_P(ReplayedLaptop, HostContract, testing::Values(replayed<fillLaptop>));
INSTANTIATE_TEST_SUITE_P(ScriptedBare, HostContract, testing::Values(scripted<fillBare>));
INSTANTIATE_TEST_SUITE_P(ReplayedBare, HostContract, testing::Values(replayed<fillBare>));

}  // namespace
}  // namespace embrix
