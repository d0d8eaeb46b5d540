// What each source of a Linux machine costs a tick. The files are of a tree in memory that stands
// in for /proc and /sys (a laptop with everything), so the figures hold the program's share and the
// system calls; what a driver or firmware takes to answer comes on top and is the machine's own.

#include <benchmark/benchmark.h>
#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <initializer_list>
#include <string>
#include <utility>

#include "hosts/linux/application_source.h"
#include "hosts/linux/assertion_source.h"
#include "hosts/linux/battery_source.h"
#include "hosts/linux/clock.h"
#include "hosts/linux/energy_source.h"
#include "hosts/linux/gpu_source.h"
#include "hosts/linux/logind_inhibitors.h"
#include "hosts/linux/memory_source.h"
#include "hosts/linux/smc_source.h"
#include "hosts/linux/temperature_source.h"
#include "hosts/linux/thermal_state_source.h"
#include "sampling/fan_reader.h"
#include "sampling/thermal_reader.h"

namespace embrix {
namespace {

class Laptop {
 public:
  Laptop() {
    std::string pattern = "/dev/shm/embrix-bench-XXXXXX";
    root_ = ::mkdtemp(pattern.data());
    putSupplies();
    putMonitors();
    putZones();
    putProcesses();
    put("proc/meminfo", meminfo());
    put("proc/pressure/memory", "some avg10=0.00 avg60=0.00 avg300=0.00 total=1");
  }
  ~Laptop() {
    std::error_code ignored;
    std::filesystem::remove_all(root_, ignored);
  }

  const std::string& root() const { return root_; }

 private:
  void put(const std::string& path, const std::string& content) {
    const std::filesystem::path file = std::filesystem::path(root_) / path;
    std::filesystem::create_directories(file.parent_path());
    std::ofstream(file) << content << '\n';
  }
  void putAll(const std::string& folder,
              std::initializer_list<std::pair<const char*, const char*>> files) {
    for (const auto& [name, content] : files) put(folder + "/" + name, content);
  }
  void putSupplies() {
    const std::string supplies = "sys/class/power_supply/";
    putAll(supplies + "AC", {{"type", "Mains"}, {"online", "0"}});
    for (const char* port : {"usb1", "usb2", "usb3", "usb4"}) {
      putAll(supplies + port, {{"type", "USB"}, {"online", "0"}});
    }
    putAll(supplies + "BAT0", {{"type", "Battery"},
                               {"status", "Discharging"},
                               {"present", "1"},
                               {"capacity", "75"},
                               {"cycle_count", "187"},
                               {"voltage_now", "16000000"},
                               {"energy_full_design", "57000000"},
                               {"energy_full", "48000000"},
                               {"energy_now", "36000000"},
                               {"power_now", "8000000"}});
  }
  void putMonitors() {
    const std::string monitors = "sys/class/hwmon/";
    put(monitors + "hwmon0/name", "coretemp");
    for (int i = 1; i <= 9; ++i) {
      put(monitors + "hwmon0/temp" + std::to_string(i) + "_input", "52000");
    }
    putAll(monitors + "hwmon1",
           {{"name", "thinkpad"}, {"fan1_input", "2150"}, {"fan2_input", "0"}});
    for (const auto& [zone, name] : {std::pair{"intel-rapl:0", "package-0"},
                                     {"intel-rapl:0:0", "core"},
                                     {"intel-rapl:0:1", "uncore"},
                                     {"intel-rapl:0:2", "dram"}}) {
      putAll(std::string("sys/class/powercap/") + zone,
             {{"name", name}, {"energy_uj", "123456789"}, {"max_energy_range_uj", "262143328850"}});
    }
    put("sys/class/drm/card0/gt/gt0/rc6_residency_ms", "5000");
  }
  void putZones() {
    for (int i = 0; i < 8; ++i) {
      putAll("sys/class/thermal/thermal_zone" + std::to_string(i),
             {{"type", "acpitz"},
              {"temp", "40000"},
              {"trip_point_0_type", "critical"},
              {"trip_point_0_temp", "105000"}});
    }
    putAll("sys/devices/system/cpu/cpu0", {{"topology/physical_package_id", "0"},
                                           {"thermal_throttle/package_throttle_count", "0"}});
  }
  // 300 processes with 20 open files each; every tenth holds a graphics handle.
  void putProcesses() {
    for (int pid = 1; pid <= 300; ++pid) {
      const std::string process = "proc/" + std::to_string(pid);
      put(process + "/comm", "process");
      const std::filesystem::path handles = std::filesystem::path(root_) / process / "fd";
      std::filesystem::create_directories(handles);
      for (int i = 0; i < 20; ++i) {
        const bool isGraphics = pid % 10 == 0 && i == 7;
        std::filesystem::create_symlink(isGraphics ? "/dev/dri/renderD128" : "socket:[12345]",
                                        handles / std::to_string(i));
      }
      if (pid % 10 == 0) put(process + "/fdinfo/7", fdinfo(pid));
    }
  }
  static std::string fdinfo(int client) {
    return "pos:\t0\nflags:\t02100002\nmnt_id:\t26\nino:\t740\ndrm-driver:\ti915\ndrm-client-id:"
           "\t" +
           std::to_string(client) +
           "\ndrm-pdev:\t0000:00:02.0\ndrm-total-system0:\t5120 KiB\ndrm-shared-system0:\t0\n"
           "drm-engine-render:\t9288864723 ns\ndrm-engine-copy:\t2035071108 ns\n"
           "drm-engine-video:\t0 ns\ndrm-engine-capacity-video:\t2\n"
           "drm-engine-video-enhance:\t0 ns";
  }
  static std::string meminfo() {
    std::string text =
        "MemTotal:       16082512 kB\nMemFree:         1082512 kB\n"
        "MemAvailable:    8041256 kB\nSUnreclaim:       200000 kB\n";
    for (int i = 0; i < 50; ++i) text += "SomethingElse:    1234567 kB\n";
    return text;
  }

  std::string root_;
};

const Laptop& laptop() {
  static const Laptop machine;
  return machine;
}

void energy(benchmark::State& state) {
  LinuxEnergySource source(laptop().root());
  for (auto _ : state) {
    benchmark::DoNotOptimize(source.sample());
    benchmark::DoNotOptimize(source.interval());
  }
}
BENCHMARK(energy);

void battery(benchmark::State& state) {
  LinuxBatterySource source(laptop().root());
  for (auto _ : state) {
    benchmark::DoNotOptimize(source.registry());
    benchmark::DoNotOptimize(source.powerSources());
  }
}
BENCHMARK(battery);

void temperature(benchmark::State& state) {
  LinuxTemperatureSource source(laptop().root());
  ThermalReader reader(source);
  for (auto _ : state) benchmark::DoNotOptimize(reader.cpuTemperature());
}
BENCHMARK(temperature);

void fans(benchmark::State& state) {
  LinuxSmcSource source(laptop().root());
  FanReader reader(source);
  for (auto _ : state) benchmark::DoNotOptimize(reader.read());
}
BENCHMARK(fans);

void thermalState(benchmark::State& state) {
  LinuxThermalStateSource source(laptop().root());
  for (auto _ : state) benchmark::DoNotOptimize(source.read());
}
BENCHMARK(thermalState);

void gpuUtilization(benchmark::State& state) {
  LinuxGpuSource source(laptop().root(), awakeSeconds);
  for (auto _ : state) benchmark::DoNotOptimize(source.performanceStatistics());
}
BENCHMARK(gpuUtilization);

void gpuClientsOf300Processes(benchmark::State& state) {
  LinuxGpuSource source(laptop().root(), awakeSeconds);
  for (auto _ : state) benchmark::DoNotOptimize(source.clients());
}
BENCHMARK(gpuClientsOf300Processes);

void memory(benchmark::State& state) {
  LinuxMemorySource source(laptop().root());
  for (auto _ : state) {
    benchmark::DoNotOptimize(source.counters());
    benchmark::DoNotOptimize(source.freeLevel());
  }
}
BENCHMARK(memory);

// Without a login service, as in a container: the ticks between two tries.
void assertionsWithoutDBus(benchmark::State& state) {
  LogindInhibitors inhibitors({.address = "unix:path=/nowhere"}, [] { return 0.0; });
  LinuxAssertionSource source(
      laptop().root(), [&] { return inhibitors.list(); }, [] { return 0.0; });
  for (auto _ : state) benchmark::DoNotOptimize(source.read());
}
BENCHMARK(assertionsWithoutDBus);

// Once in the program's life: this machine's own desktop entries.
void applicationIndex(benchmark::State& state) {
  for (auto _ : state) {
    LinuxApplicationSource source("/",
                                  {.home = "/root", .dataHome = "", .dataFolders = "", .path = ""});
    benchmark::DoNotOptimize(source.byExecutable("/usr/bin/vim.basic"));
  }
}
BENCHMARK(applicationIndex);

}  // namespace
}  // namespace embrix
