// Whole machines in captured trees, as their kernels show them.
#pragma once

#include <fmt/format.h>

#include <string>
#include <utility>
#include <vector>

#include "captured_tree.h"

namespace embrix {

using TreeFiles = std::vector<std::pair<std::string, std::string>>;

inline void writeAll(CapturedTree& tree, const TreeFiles& files) {
  for (const auto& [path, content] : files) tree.write(path, content + "\n");
}

inline void putCores(CapturedTree& tree, int cores, int threadsPerCore) {
  for (int cpu = 0; cpu < cores * threadsPerCore; ++cpu) {
    const int first = cpu % cores;
    const std::string path = fmt::format("sys/devices/system/cpu/cpu{}/topology/", cpu);
    tree.write(path + "core_cpus_list", threadsPerCore == 2
                                            ? fmt::format("{},{}\n", first, first + cores)
                                            : fmt::format("{}\n", first));
    tree.write(path + "physical_package_id", "0\n");
  }
}

// A laptop that tells charge in energy, unplugged, its fan at rest, the counters readable.
inline void laptopOnBattery(CapturedTree& tree) {
  putCores(tree, 4, 2);
  writeAll(tree, {
                     {"sys/class/dmi/id/sys_vendor", "LENOVO"},
                     {"sys/class/dmi/id/product_name", "20XWCTO1WW"},
                     {"sys/class/dmi/id/product_version", "ThinkPad X1 Carbon Gen 9"},
                     {"proc/cpuinfo",
                      "processor\t: 0\nmodel name\t: 11th Gen Intel(R) Core(TM) "
                      "i7-1185G7 @ 3.00GHz"},
                     {"proc/meminfo",
                      "MemTotal:       16082512 kB\nMemFree:         1082512 kB\n"
                      "MemAvailable:    8041256 kB\nSUnreclaim:       200000 kB"},
                     {"proc/pressure/memory",
                      "some avg10=0.00 avg60=0.10 avg300=0.00 total=1\n"
                      "full avg10=0.00 avg60=0.00 avg300=0.00 total=1"},
                     {"etc/os-release", "NAME=\"Debian GNU/Linux\"\nVERSION_ID=\"12\""},
                     {"sys/class/power_supply/AC/type", "Mains"},
                     {"sys/class/power_supply/AC/online", "0"},
                     {"sys/class/power_supply/BAT0/type", "Battery"},
                     {"sys/class/power_supply/BAT0/status", "Discharging"},
                     {"sys/class/power_supply/BAT0/present", "1"},
                     {"sys/class/power_supply/BAT0/capacity", "75"},
                     {"sys/class/power_supply/BAT0/cycle_count", "187"},
                     {"sys/class/power_supply/BAT0/voltage_now", "16000000"},
                     {"sys/class/power_supply/BAT0/voltage_min_design", "15480000"},
                     {"sys/class/power_supply/BAT0/energy_full_design", "57000000"},
                     {"sys/class/power_supply/BAT0/energy_full", "48000000"},
                     {"sys/class/power_supply/BAT0/energy_now", "36000000"},
                     {"sys/class/power_supply/BAT0/power_now", "8000000"},
                     {"sys/class/hwmon/hwmon0/name", "acpitz"},
                     {"sys/class/hwmon/hwmon0/temp1_input", "30000"},
                     {"sys/class/hwmon/hwmon1/name", "nvme"},
                     {"sys/class/hwmon/hwmon1/temp1_input", "99000"},
                     {"sys/class/hwmon/hwmon4/name", "coretemp"},
                     {"sys/class/hwmon/hwmon4/temp1_label", "Package id 0"},
                     {"sys/class/hwmon/hwmon4/temp1_input", "52000"},
                     {"sys/class/hwmon/hwmon4/temp2_label", "Core 0"},
                     {"sys/class/hwmon/hwmon4/temp2_input", "47000"},
                     {"sys/class/hwmon/hwmon5/name", "thinkpad"},
                     {"sys/class/hwmon/hwmon5/fan1_input", "0"},
                     {"sys/class/thermal/thermal_zone0/type", "acpitz"},
                     {"sys/class/thermal/thermal_zone0/temp", "30000"},
                     {"sys/class/thermal/thermal_zone0/trip_point_0_type", "critical"},
                     {"sys/class/thermal/thermal_zone0/trip_point_0_temp", "128000"},
                     {"sys/class/powercap/intel-rapl:0/name", "package-0"},
                     {"sys/class/powercap/intel-rapl:0/energy_uj", "1000000"},
                     {"sys/class/powercap/intel-rapl:0/max_energy_range_uj", "262143328850"},
                     {"sys/class/powercap/intel-rapl:0:1/name", "uncore"},
                     {"sys/class/powercap/intel-rapl:0:1/energy_uj", "200000"},
                     {"sys/class/powercap/intel-rapl:0:1/max_energy_range_uj", "262143328850"},
                     {"sys/class/drm/card0/gt/gt0/rc6_residency_ms", "5000"},
                 });
}

// A laptop that tells charge, charging over USB, held back by heat, two fans, ordinary rights.
inline void laptopOnPower(CapturedTree& tree) {
  putCores(tree, 8, 2);
  writeAll(tree, {
                     {"sys/class/dmi/id/sys_vendor", "Framework"},
                     {"sys/class/dmi/id/product_name", "Laptop 13 (AMD Ryzen 7040Series)"},
                     {"proc/cpuinfo",
                      "processor\t: 0\nmodel name\t: AMD Ryzen 7 7840U w/ Radeon "
                      "780M Graphics"},
                     {"proc/meminfo", "MemTotal:       32000000 kB\nMemAvailable:    3200000 kB"},
                     {"proc/pressure/memory", "some avg10=95.00 avg60=0.00 avg300=0.00 total=1"},
                     {"proc/sys/kernel/osrelease", "6.12.9-arch1-1"},
                     {"etc/os-release", "NAME=\"Arch Linux\"\nID=arch"},
                     {"sys/class/power_supply/ACAD/type", "Mains"},
                     {"sys/class/power_supply/ACAD/online", "1"},
                     {"sys/class/power_supply/ucsi-source-psy-1/type", "USB"},
                     {"sys/class/power_supply/ucsi-source-psy-1/online", "0"},
                     {"sys/class/power_supply/hidpp_battery_0/type", "Battery"},
                     {"sys/class/power_supply/hidpp_battery_0/scope", "Device"},
                     {"sys/class/power_supply/hidpp_battery_0/status", "Discharging"},
                     {"sys/class/power_supply/hidpp_battery_0/capacity", "5"},
                     {"sys/class/power_supply/BAT1/type", "Battery"},
                     {"sys/class/power_supply/BAT1/status", "Charging"},
                     {"sys/class/power_supply/BAT1/present", "1"},
                     {"sys/class/power_supply/BAT1/capacity", "40"},
                     {"sys/class/power_supply/BAT1/cycle_count", "0"},
                     {"sys/class/power_supply/BAT1/voltage_now", "15000000"},
                     {"sys/class/power_supply/BAT1/charge_full_design", "4000000"},
                     {"sys/class/power_supply/BAT1/charge_full", "3800000"},
                     {"sys/class/power_supply/BAT1/charge_now", "1520000"},
                     {"sys/class/power_supply/BAT1/current_now", "2000000"},
                     {"sys/class/hwmon/hwmon3/name", "k10temp"},
                     {"sys/class/hwmon/hwmon3/temp1_label", "Tctl"},
                     {"sys/class/hwmon/hwmon3/temp1_input", "96500"},
                     {"sys/class/hwmon/hwmon6/name", "cros_ec"},
                     {"sys/class/hwmon/hwmon6/fan1_input", "4800"},
                     {"sys/class/hwmon/hwmon6/fan1_max", "7000"},
                     {"sys/class/hwmon/hwmon6/fan2_input", "5100"},
                     {"sys/class/hwmon/hwmon6/fan2_max", "7000"},
                     {"sys/class/thermal/thermal_zone0/temp", "96500"},
                     {"sys/class/thermal/thermal_zone0/trip_point_0_type", "passive"},
                     {"sys/class/thermal/thermal_zone0/trip_point_0_temp", "95000"},
                     {"sys/class/thermal/thermal_zone0/trip_point_1_type", "hot"},
                     {"sys/class/thermal/thermal_zone0/trip_point_1_temp", "105000"},
                     {"sys/class/powercap/intel-rapl:0/name", "package-0"},
                     {"sys/class/drm/card1/device/gpu_busy_percent", "63"},
                 });
}

// A desktop: no battery, no plug, a card with a fan, graphics asleep.
inline void desktop(CapturedTree& tree) {
  putCores(tree, 6, 1);
  writeAll(tree, {
                     {"sys/class/dmi/id/product_name", "System Product Name"},
                     {"sys/class/dmi/id/board_name", "PRIME B650M-A"},
                     {"proc/cpuinfo",
                      "processor\t: 0\nmodel name\t: AMD Ryzen 5 7500F 6-Core "
                      "Processor"},
                     {"proc/meminfo", "MemTotal:       8000000 kB\nMemAvailable:    6000000 kB"},
                     {"etc/os-release", "NAME=Ubuntu\nVERSION_ID=\"24.04\""},
                     {"sys/class/hwmon/hwmon1/name", "k10temp"},
                     {"sys/class/hwmon/hwmon1/temp1_label", "Tctl"},
                     {"sys/class/hwmon/hwmon1/temp1_input", "61000"},
                     {"sys/class/hwmon/hwmon1/temp2_label", "Tdie"},
                     {"sys/class/hwmon/hwmon1/temp2_input", "51000"},
                     {"sys/class/hwmon/hwmon2/name", "nct6799"},
                     {"sys/class/hwmon/hwmon2/temp1_label", "SYSTIN"},
                     {"sys/class/hwmon/hwmon2/temp1_input", "127000"},
                     {"sys/class/hwmon/hwmon2/fan1_input", "812"},
                     {"sys/class/hwmon/hwmon2/fan2_input", "1203"},
                     {"sys/class/hwmon/hwmon3/name", "amdgpu"},
                     {"sys/class/hwmon/hwmon3/fan1_input", "0"},
                     {"sys/class/hwmon/hwmon3/device/power/runtime_status", "suspended"},
                     {"sys/class/drm/card0/device/gpu_busy_percent", "0"},
                     {"sys/class/drm/card0/device/power/runtime_status", "suspended"},
                 });
}

}  // namespace embrix
