#include "sampling/simulator_devices.h"

#include <map>
#include <string_view>

#include <gtest/gtest.h>

#include "fakes/captures.h"
#include "fakes/scripted_host.h"

namespace embrix {
namespace {

using namespace std::string_view_literals;

constexpr const char* kUDID = "3F2504E0-4F89-41D3-9A0C-0305E82C3301";
constexpr const char* kRuntime = "com.apple.CoreSimulator.SimRuntime.iOS-17-4";

std::optional<SimulatorFinder::Device> deviceIn(std::optional<std::string> bytes) {
  return SimulatorDevices::device(kUDID, "/Users/ada", [&](const std::string&) { return bytes; });
}

std::string xml(std::string_view body) {
  return R"(<?xml version="1.0" encoding="UTF-8"?><plist version="1.0">)" + std::string(body) +
         "</plist>";
}

TEST(SimulatorDevicesTest, TheFileStandsInTheDevicesFolder) {
  std::string asked;
  SimulatorDevices::device(kUDID, "/Users/ada", [&](const std::string& path) {
    asked = path;
    return std::nullopt;
  });
  EXPECT_EQ(asked,
            "/Users/ada/Library/Developer/CoreSimulator/Devices/"
            "3F2504E0-4F89-41D3-9A0C-0305E82C3301/device.plist");
}

TEST(SimulatorDevicesTest, ATextFileNamesItsDevice) {
  const auto device =
      deviceIn(xml("<dict><key>name</key><string>iPhone 15 Pro</string><key>runtime</key><string>" +
                   std::string(kRuntime) + "</string><key>state</key><integer>3</integer></dict>"));
  EXPECT_EQ(device, (SimulatorFinder::Device{"iPhone 15 Pro", kRuntime}));
}

// {name: "iPad Air", runtime: …, state: 1}, as a simulator writes it.
constexpr std::string_view kBinary =
    "bplist00\xd3\x01\x02\x03\x04\x05\x06TnameWruntimeUstateXiPad Air_\x10+"
    "com.apple.CoreSimulator.SimRuntime.iOS-17-4\x10\x01"
    "\x08\x0f\x14\x1c\x22\x2bY\x00\x00\x00\x00\x00\x00\x01\x01\x00\x00\x00\x00\x00\x00\x00\x07"
    "\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00["sv;

TEST(SimulatorDevicesTest, ABinaryFileNamesItsDevice) {
  EXPECT_EQ(deviceIn(std::string(kBinary)), (SimulatorFinder::Device{"iPad Air", kRuntime}));
}

TEST(SimulatorDevicesTest, AFileWithoutARuntimeIsADevice) {
  const SimulatorFinder::Device expected{"iPhone", std::nullopt};
  EXPECT_EQ(deviceIn(xml("<dict><key>name</key><string>iPhone</string></dict>")), expected);
  EXPECT_EQ(deviceIn(xml("<dict><key>name</key><string>iPhone</string>"
                         "<key>runtime</key><integer>17</integer></dict>")),
            expected);
}

TEST(SimulatorDevicesTest, ANameInWildBytesIsRepaired) {
  std::string bytes(kBinary);
  bytes.replace(bytes.find("iPad Air"), 4, "iP\xc3(");
  const auto device = deviceIn(bytes);
  ASSERT_TRUE(device.has_value());
  EXPECT_EQ(device->name, "iP\xef\xbf\xbd( Air");
}

struct File {
  const char* label;
  std::optional<std::string> bytes;
};

TEST(SimulatorDevicesTest, AFileThatNamesNoDeviceIsNone) {
  const std::vector<File> files = {
      {"missing", std::nullopt},
      {"empty", ""},
      {"no list", "not a property list"},
      {"a list in place of a dictionary", xml("<array><string>iPhone</string></array>")},
      {"a text in place of a dictionary", xml("<string>iPhone</string>")},
      {"no name", xml("<dict><key>runtime</key><string>x</string></dict>")},
      {"a name that is no text", xml("<dict><key>name</key><integer>15</integer></dict>")},
      {"cut off", R"(<?xml version="1.0"?><plist version="1.0"><dict><key>name</key><str)"},
      {"dates alone",
       captureOr("07_xcode/coresimulator_device_dates_only.plist",
                 xml("<dict><key>lastUsedAt</key><date>2026-07-16T14:20:05Z</date></dict>"))},
  };
  for (const File& file : files) EXPECT_EQ(deviceIn(file.bytes), std::nullopt) << file.label;
}

TEST(SimulatorDevicesTest, ABinaryFileCutAnywhereIsNone) {
  for (std::size_t length = 0; length < kBinary.size(); ++length) {
    EXPECT_EQ(deviceIn(std::string(kBinary.substr(0, length))), std::nullopt) << length;
  }
}

TEST(SimulatorDevicesTest, ShuttingDownStartsTheSimulatorsTool) {
  ScriptedHost world;
  world.commandOutputs["/usr/bin/xcrun simctl shutdown " + std::string(kUDID)] = "";
  auto host = world.host();
  SimulatorDevices::shutDown(kUDID, *host.commands);
  EXPECT_EQ(world.log, std::vector<std::string>{"commands.start /usr/bin/xcrun simctl shutdown " +
                                                std::string(kUDID)});
}

TEST(SimulatorDevicesTest, AToolThatIsMissingIsNotComplainedAbout) {
  ScriptedHost world;
  world.failing.insert("commands");
  auto host = world.host();
  SimulatorDevices::shutDown(kUDID, *host.commands);
  EXPECT_EQ(world.log.size(), 1U);
}

}  // namespace
}  // namespace embrix
