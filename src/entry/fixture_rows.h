// The processes of the demo data, each in one line. Those that stand in several records are told
// apart by their pids.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

namespace embrix {

struct FixtureProcess {
  std::int32_t pid;
  std::string_view name;
  double watts;
  double cpuPercent;
  double gpuWatts;
  double memoryMB;
  double uptimeHours;
};

struct FixtureGroup {
  std::string_view key;
  std::string_view name;
  std::string_view bundlePath;  // empty for what is no application
  std::vector<FixtureProcess> processes;
};

inline const std::vector<FixtureGroup>& fixtureGroups() {
  static const std::vector<FixtureGroup> kGroups = {
      {"tool:node",
       "node",
       "",
       {{4319, "node", 10.8, 214, 0, 742, 37}, {4320, "node", 1.2, 22, 0, 318, 37}}},
      {"app:safari",
       "Safari",
       "/Applications/Safari.app",
       {{612, "com.apple.WebKit.WebContent", 3.6, 58, 0.4, 1284, 9},
        {618, "com.apple.WebKit.GPU", 1.9, 12, 1.4, 486, 9},
        {601, "Safari", 0.9, 9, 0.1, 342, 9},
        {614, "com.apple.WebKit.Networking", 0.2, 2, 0, 96, 9}}},
      {"tool:emulator",
       "Android emulator",
       "",
       {{2207, "qemu-system-aarch64", 3.1, 64, 0.3, 4210, 14}}},
      {"app:music",
       "Music",
       "/System/Applications/Music.app",
       {{733, "Music", 0.8, 7, 0.1, 412, 6}}},
      {"tool:orbstack", "OrbStack Helper", "", {{1480, "OrbStack Helper", 0.7, 6, 0, 2150, 118}}},
      {"tool:dev",
       "Developer tools",
       "",
       {{5561, "pnpm", 0.3, 3, 0, 388, 3},
        {903, "launchd_sim", 0.2, 2, 0, 1620, 52},
        {2240, "netsimd", 0.1, 1, 0, 64, 14},
        {2233, "adb", 0.05, 0.5, 0, 38, 14}}},
      {"app:mail", "Mail", "/System/Applications/Mail.app", {{741, "Mail", 0.2, 2, 0, 268, 9}}},
  };
  return kGroups;
}

}  // namespace embrix
