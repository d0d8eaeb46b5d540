// Whole machines, from their files to what the readers make of them.
#include "machines.h"

#include <gtest/gtest.h>

#include <memory>

#include "fakes/scripted_host.h"
#include "hosts/linux/battery_source.h"
#include "hosts/linux/energy_source.h"
#include "hosts/linux/gpu_source.h"
#include "hosts/linux/machine_facts.h"
#include "hosts/linux/memory_source.h"
#include "hosts/linux/smc_source.h"
#include "hosts/linux/temperature_source.h"
#include "hosts/linux/thermal_state_source.h"
#include "sampling/battery_reader.h"
#include "sampling/energy_reader.h"
#include "sampling/fan_reader.h"
#include "sampling/gpu_usage_reader.h"
#include "sampling/mac_info.h"
#include "sampling/system_stats_reader.h"
#include "sampling/thermal_reader.h"

namespace embrix {
namespace {

class LinuxMachineTest : public testing::Test {
 protected:
  std::optional<BatteryReading> battery() {
    LinuxBatterySource source(tree.root());
    return BatteryReader(source).read();
  }
  std::optional<double> temperature() {
    LinuxTemperatureSource source(tree.root());
    return ThermalReader(source).cpuTemperature();
  }
  std::vector<Fan> fans() {
    LinuxSmcSource source(tree.root());
    return FanReader(source).read();
  }
  ThermalState thermalState() { return LinuxThermalStateSource(tree.root()).read(); }
  MacInfo info() { return MacInfo::from(linuxMachineFacts(tree.root())); }
  std::optional<MemoryReading> memory() {
    LinuxMemorySource source(tree.root());
    return SystemStatsReader(gpu, source).memory();
  }
  std::optional<double> utilization() {
    LinuxMemorySource source(tree.root());
    return SystemStatsReader(gpu, source).gpuUtilization();
  }

  CapturedTree tree;
  double uptime = 100;
  // Made before the machine is written: the tests that need a graphics processor make it anew.
  LinuxGpuSource gpu{tree.root(), [this] { return uptime; }};
};

TEST_F(LinuxMachineTest, ALaptopOnBattery) {
  laptopOnBattery(tree);
  const auto reading = battery();
  ASSERT_TRUE(reading);
  EXPECT_DOUBLE_EQ(reading->systemWatts.value_or(0), 8);
  EXPECT_EQ(reading->percent, 75);
  EXPECT_EQ(reading->minutesRemaining, 270);
  EXPECT_FALSE(reading->isCharging);
  EXPECT_FALSE(reading->externalConnected);
  EXPECT_EQ(reading->healthPercent, 84);
  EXPECT_EQ(reading->cycleCount, 187);
  EXPECT_DOUBLE_EQ(reading->remainingWh.value_or(0), 36);
  EXPECT_DOUBLE_EQ(reading->fullWh.value_or(0), 48);

  EXPECT_EQ(temperature(), 52);
  EXPECT_EQ(fans(), (std::vector<Fan>{{0, 0}}));
  EXPECT_EQ(thermalState(), ThermalState::nominal);
  EXPECT_EQ(info(), (MacInfo{.name = "ThinkPad X1 Carbon Gen 9",
                             .chip = "11th Gen Intel Core i7-1185G7",
                             .performanceCores = 4,
                             .efficiencyCores = 0,
                             .memoryGB = 15,
                             .osVersion = "Debian GNU/Linux 12.0",
                             .model = "20XWCTO1WW"}));
  const auto use = memory();
  ASSERT_TRUE(use);
  EXPECT_EQ(use->totalBytes, 16082512ULL * 1024);
  EXPECT_EQ(use->usedBytes, 8041256ULL * 1024);
  EXPECT_DOUBLE_EQ(use->pressure, 0.5);
}

TEST_F(LinuxMachineTest, ALaptopsEnergyAndGraphics) {
  laptopOnBattery(tree);
  ScriptedHost machine;
  Host clock = machine.host();
  machine.uptime = 100;
  LinuxEnergySource energy(tree.root());
  EnergyReader reader(energy, *clock.clock);
  EXPECT_EQ(reader.read(), std::nullopt);
  tree.write("sys/class/powercap/intel-rapl:0/energy_uj", "17000000\n");
  tree.write("sys/class/powercap/intel-rapl:0:1/energy_uj", "4200000\n");
  machine.uptime = 102;
  const auto breakdown = reader.read();
  ASSERT_TRUE(breakdown);
  EXPECT_DOUBLE_EQ(breakdown->cpu, 6);
  EXPECT_DOUBLE_EQ(breakdown->gpu, 2);
  EXPECT_EQ(breakdown->memory, 0);
  EXPECT_TRUE(breakdown->cores.empty());

  gpu = LinuxGpuSource(tree.root(), [this] { return uptime; });
  EXPECT_EQ(utilization(), std::nullopt);
  uptime = 102;
  tree.write("sys/class/drm/card0/gt/gt0/rc6_residency_ms", "6500\n");
  EXPECT_EQ(utilization(), 0.25);
}

TEST_F(LinuxMachineTest, GraphicsTimeReachesItsProcess) {
  laptopOnBattery(tree);
  const auto put = [&](const char* time) {
    tree.write("proc/42/fdinfo/7", std::string("drm-client-id:\t1\ndrm-engine-render:\t") + time +
                                       " ns\ndrm-engine-copy:\t5 ns\n");
  };
  tree.link("proc/42/fd/7", "/dev/dri/renderD128");
  tree.write("proc/42/comm", "a (strange) name, with 7\n");
  put("1000");
  gpu = LinuxGpuSource(tree.root(), [this] { return uptime; });
  GPUUsageReader reader(gpu);
  EXPECT_TRUE(reader.read().empty());
  put("1750");
  const auto& deltas = reader.read();
  ASSERT_EQ(deltas.size(), 1u);
  EXPECT_EQ(deltas.begin()->first, 42);
  EXPECT_EQ(deltas.begin()->second, 750u);
}

TEST_F(LinuxMachineTest, ALaptopOnPower) {
  laptopOnPower(tree);
  const auto reading = battery();
  ASSERT_TRUE(reading);
  EXPECT_EQ(reading->systemWatts, std::nullopt);  // nothing measures the adapter's input
  EXPECT_EQ(reading->percent, 40);
  EXPECT_EQ(reading->minutesRemaining, std::nullopt);
  EXPECT_TRUE(reading->isCharging);
  EXPECT_TRUE(reading->externalConnected);
  EXPECT_EQ(reading->healthPercent, 95);
  EXPECT_EQ(reading->cycleCount, std::nullopt);
  EXPECT_DOUBLE_EQ(reading->remainingWh.value_or(0), 22.8);
  EXPECT_DOUBLE_EQ(reading->fullWh.value_or(0), 57);

  EXPECT_EQ(temperature(), 96.5);
  EXPECT_EQ(fans(), (std::vector<Fan>{{4800, 7000}, {5100, 7000}}));
  EXPECT_EQ(thermalState(), ThermalState::fair);
  EXPECT_FALSE(LinuxEnergySource(tree.root()).sample());
  EXPECT_EQ(info().shortName(), "Laptop 13");
  EXPECT_EQ(info().performanceCores, 8);
  EXPECT_EQ(info().osVersion, "Linux 6.12.9");
  EXPECT_DOUBLE_EQ(memory()->pressure, 0.95);
  gpu = LinuxGpuSource(tree.root(), [this] { return uptime; });
  EXPECT_EQ(utilization(), 0.63);
}

TEST_F(LinuxMachineTest, ADesktop) {
  desktop(tree);
  EXPECT_EQ(battery(), std::nullopt);
  EXPECT_EQ(temperature(), 51);
  EXPECT_EQ(fans(), (std::vector<Fan>{{812, 0}, {1203, 0}}));
  EXPECT_EQ(thermalState(), ThermalState::nominal);
  EXPECT_EQ(info().name, "PRIME B650M-A");
  EXPECT_EQ(info().chip, "AMD Ryzen 5 7500F 6-Core Processor");
  EXPECT_EQ(info().performanceCores, 6);
  EXPECT_DOUBLE_EQ(memory()->pressure, 0.25);
  gpu = LinuxGpuSource(tree.root(), [this] { return uptime; });
  EXPECT_EQ(utilization(), std::nullopt);
}

TEST_F(LinuxMachineTest, AMachineWithNothingAtAll) {
  EXPECT_EQ(battery(), std::nullopt);
  EXPECT_EQ(temperature(), std::nullopt);
  EXPECT_TRUE(fans().empty());
  EXPECT_EQ(thermalState(), ThermalState::nominal);
  EXPECT_FALSE(LinuxEnergySource(tree.root()).sample());
  EXPECT_EQ(memory(), std::nullopt);
  EXPECT_EQ(utilization(), std::nullopt);
  EXPECT_TRUE(gpu.clients().empty());
  EXPECT_EQ(info().name, "Mac");
  EXPECT_EQ(info().performanceCores, 0);
}

}  // namespace
}  // namespace embrix
