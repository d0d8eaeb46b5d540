#include "running/stop_message.h"

#include <limits>

#include <gtest/gtest.h>

namespace embrix {
namespace {

constexpr std::uint64_t kMegabyte = 1024 * 1024;

ForgottenRow row(double uptime, const std::vector<std::uint64_t>& memory) {
  ForgottenRow row;
  row.item.uptime = uptime;
  for (const std::uint64_t bytes : memory) row.processes.push_back({.memoryBytes = bytes});
  return row;
}

TEST(StopMessageTest, ATool) {
  EXPECT_EQ(StopMessage::forgotten(row(7200, {1024 * kMegabyte, 512 * kMegabyte})),
            "It's been running for 2 hours and frees 1.5 GB. Anything unsaved in it is lost.");
}

TEST(StopMessageTest, ASimulator) {
  auto simulator = row(3600, {100 * kMegabyte});
  simulator.item.simulatorUDID = "3F2504E0-4F89-41D3-9A0C-0305E82C3301";
  EXPECT_EQ(StopMessage::forgotten(simulator),
            "It's been booted for 1 hour and frees 100 MB. Apps running in it quit, like shutting "
            "it down in Simulator.");
}

TEST(StopMessageTest, ARowOfWhichNothingIsLeft) {
  EXPECT_EQ(StopMessage::forgotten(row(0, {})),
            "It's been running for just now and frees 1 MB. Anything unsaved in it is lost.");
}

TEST(StopMessageTest, AllRows) {
  EXPECT_EQ(StopMessage::all({row(7200, {50 * kMegabyte}), row(3600, {30 * kMegabyte, kMegabyte})}),
            "This frees 81 MB of memory. Anything unsaved in them is lost. Pin anything you still "
            "need to keep it.");
  EXPECT_EQ(StopMessage::all({}),
            "This frees 1 MB of memory. Anything unsaved in them is lost. Pin anything you still "
            "need to keep it.");
}

TEST(StopMessageTest, FootprintsThatDoNotFitStayTheLargest) {
  constexpr std::uint64_t kMost = std::numeric_limits<std::uint64_t>::max();
  EXPECT_EQ(StopMessage::forgotten(row(7200, {kMost, kMost})),
            StopMessage::forgotten(row(7200, {kMost})));
  EXPECT_EQ(StopMessage::all({row(0, {kMost}), row(0, {kMegabyte})}),
            StopMessage::all({row(0, {kMost})}));
}

struct Server {
  const char* label;
  std::vector<int> ports;
  const char* expected;
};

TEST(StopMessageTest, AServerNamesItsFirstThreePorts) {
  const std::vector<Server> servers = {
      {"no port", {}, "Anything unsaved in it is lost."},
      {"one", {3000}, "localhost:3000 will stop responding. Anything unsaved in it is lost."},
      {"four",
       {80, 3000, 5173, 9229},
       "localhost:80, localhost:3000, localhost:5173 will stop responding. Anything unsaved in it "
       "is lost."},
  };
  for (const Server& told : servers) {
    LocalServer server;
    server.ports = told.ports;
    EXPECT_EQ(StopMessage::server(server), told.expected) << told.label;
  }
}

TEST(ForgottenRowTest, IsKnownByItsRoot) {
  ForgottenRow forgotten;
  forgotten.item.root.id = "10-1700000000";
  EXPECT_EQ(forgotten.id(), "10-1700000000");
}

}  // namespace
}  // namespace embrix
