#include "hosts/linux/machine_facts.h"

#include <gtest/gtest.h>

#include <string>

#include "captured_tree.h"

namespace embrix {
namespace {

using namespace std::string_literals;

TEST(MachineFactsTextTest, ChipsAreNamedWithoutMarksAndClocks) {
  struct Case {
    const char* modelName;
    const char* expected;
  };
  const Case cases[] = {
      {" 11th Gen Intel(R) Core(TM) i7-1185G7 @ 3.00GHz", "11th Gen Intel Core i7-1185G7"},
      {" Intel(R) Xeon(R) CPU           E5-2670 v3 @ 2.30GHz", "Intel Xeon E5-2670 v3"},
      {" Intel(R) Core(TM) Ultra 7 155H", "Intel Core Ultra 7 155H"},
      {" AMD Ryzen 7 7840U w/ Radeon 780M Graphics", "AMD Ryzen 7 7840U w/ Radeon 780M Graphics"},
      {"", ""},
      {" @ 3.00GHz", ""},
  };
  for (const Case& c : cases) EXPECT_EQ(shortChipName(c.modelName), c.expected);
}

TEST(MachineFactsTextTest, VersionsAreUpToThreeNumbers) {
  struct Case {
    const char* text;
    SystemVersion expected;
  };
  const Case cases[] = {
      {"12", {12, 0, 0}},
      {"22.04", {22, 4, 0}},
      {"24.04.1", {24, 4, 1}},
      {"6.12.9-arch1", {6, 12, 9}},
      {"6.18.44-fc-v657", {6, 18, 44}},
      {"6.1-rc3", {6, 1, 0}},
      {"", {0, 0, 0}},
      {"rolling", {0, 0, 0}},
      {"-1.2", {0, 0, 0}},
      {"99999999999.1", {0, 0, 0}},
      {"15.", {15, 0, 0}},
      {"1.2.3.4", {1, 2, 3}},
  };
  for (const Case& c : cases) EXPECT_EQ(parseSystemVersion(c.text), c.expected) << c.text;
}

TEST(MachineFactsTextTest, OsReleaseValuesLoseTheirQuotes) {
  const std::string text =
      "# comment\nPRETTY_NAME=\"Debian GNU/Linux 12\"\nNAME='Debian GNU/Linux'\nVERSION_ID=12\r\n"
      "EMPTY=\"\"\nVERSION_IDX=13\nID=first\nID=last\nODD=\"open\n";
  EXPECT_EQ(osReleaseValue(text, "NAME"), "Debian GNU/Linux");
  EXPECT_EQ(osReleaseValue(text, "VERSION_ID"), "12");
  EXPECT_EQ(osReleaseValue(text, "ID"), "last");
  EXPECT_EQ(osReleaseValue(text, "ODD"), "\"open");
  EXPECT_EQ(osReleaseValue(text, "EMPTY"), std::nullopt);
  EXPECT_EQ(osReleaseValue(text, "MISSING"), std::nullopt);
  EXPECT_EQ(osReleaseValue("", "NAME"), std::nullopt);
}

class LinuxMachineFactsTest : public testing::Test {
 protected:
  void firmware(const std::string& field, const std::string& text) {
    tree.write("sys/class/dmi/id/" + field, text + "\n");
  }
  MachineFacts facts() { return linuxMachineFacts(tree.root()); }

  CapturedTree tree;
};

TEST_F(LinuxMachineFactsTest, ProductNames) {
  struct Case {
    const char* label;
    std::vector<std::pair<const char*, const char*>> fields;
    std::optional<std::string> name;
    std::optional<std::string> model;
  };
  const Case cases[] = {
      {"a laptop",
       {{"sys_vendor", "Framework"}, {"product_name", "Laptop 13"}},
       "Laptop 13",
       "Laptop 13"},
      {"a maker that hides the name",
       {{"sys_vendor", "LENOVO"},
        {"product_name", "20XW"},
        {"product_version", "ThinkPad X1 Carbon Gen 9"}},
       "ThinkPad X1 Carbon Gen 9",
       "20XW"},
      {"that maker without a version",
       {{"sys_vendor", "LENOVO"}, {"product_name", "20XW"}},
       "20XW",
       "20XW"},
      {"a board on its own",
       {{"product_name", "To Be Filled By O.E.M."}, {"board_name", "B550M Pro4"}},
       "B550M Pro4",
       std::nullopt},
      {"nothing filled in",
       {{"product_name", "System Product Name"}, {"board_name", "Default string"}},
       std::nullopt,
       std::nullopt},
      {"blank", {{"product_name", "   "}}, std::nullopt, std::nullopt},
      {"nothing", {}, std::nullopt, std::nullopt},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.label);
    tree.remove("sys");
    for (const auto& [field, text] : c.fields) firmware(field, text);
    EXPECT_EQ(facts().productName, c.name);
    EXPECT_EQ(facts().model, c.model);
  }
}

TEST_F(LinuxMachineFactsTest, BoardsWithoutFirmwareTablesHaveADeviceTree) {
  tree.write("sys/firmware/devicetree/base/model", "Raspberry Pi 4 Model B Rev 1.4\0"s);
  tree.write("sys/firmware/devicetree/base/compatible", "raspberrypi,4-model-b\0brcm,bcm2711\0"s);
  EXPECT_EQ(facts().productName, "Raspberry Pi 4 Model B Rev 1.4");
  EXPECT_EQ(facts().model, "raspberrypi,4-model-b");
}

TEST_F(LinuxMachineFactsTest, TheFirstProcessorNamesTheChip) {
  tree.write("proc/cpuinfo",
             "processor\t: 0\nmodel\t\t: 140\nmodel name\t: Intel(R) Core(TM) i5 CPU @ 2GHz\n"
             "processor\t: 1\nmodel name\t: another\n");
  EXPECT_EQ(facts().chip, "Intel Core i5");
  tree.write("proc/cpuinfo", "processor\t: 0\nBogoMIPS\t: 108.00\nCPU part\t: 0xd08\n");
  EXPECT_EQ(facts().chip, std::nullopt);
  tree.write("proc/cpuinfo", "model name");
  EXPECT_EQ(facts().chip, std::nullopt);
}

TEST_F(LinuxMachineFactsTest, MemoryIsWhatIsFitted) {
  tree.write("proc/meminfo", "MemTotal: 16082512 kB\nMemAvailable: 1 kB\n");
  EXPECT_EQ(facts().memoryBytes, 16082512ULL * 1024);
  const std::string blocks = "sys/devices/system/memory/";
  tree.write(blocks + "block_size_bytes", "8000000\n");  // hexadecimal
  for (int i = 0; i < 128; ++i) {
    tree.write(blocks + "memory" + std::to_string(i) + "/state", "online\n");
  }
  tree.write(blocks + "memory128/state", "offline\n");
  EXPECT_EQ(facts().memoryBytes, 16ULL << 30);
  for (const char* size : {"", "0", "zz", "-1", "ffffffffffffffff", "ffffffffffffffffffff"}) {
    tree.write(blocks + "block_size_bytes", size);
    EXPECT_EQ(facts().memoryBytes, 16082512ULL * 1024) << size;
  }
}

TEST_F(LinuxMachineFactsTest, TheSystemIsTheDistributionOrTheKernel) {
  tree.write("proc/sys/kernel/osrelease", "6.12.9-arch1-1\n");
  MachineFacts kernel = facts();
  EXPECT_EQ(kernel.systemName, "Linux");
  EXPECT_EQ(kernel.systemMajor, 6);
  EXPECT_EQ(kernel.systemMinor, 12);
  EXPECT_EQ(kernel.systemPatch, 9);

  tree.write("usr/lib/os-release", "NAME=\"Fedora Linux\"\nVERSION_ID=41\n");
  EXPECT_EQ(facts().systemName, "Fedora Linux");
  EXPECT_EQ(facts().systemMajor, 41);
  EXPECT_EQ(facts().systemMinor, 0);

  // A distribution without numbers must not borrow the kernel's.
  tree.write("etc/os-release", "NAME=\"Arch Linux\"\nBUILD_ID=rolling\n");
  EXPECT_EQ(facts().systemName, "Linux");
  EXPECT_EQ(facts().systemMajor, 6);
}

TEST_F(LinuxMachineFactsTest, AMachineThatTellsNothingHasNoFacts) {
  MachineFacts nothing;
  nothing.systemName = "Linux";
  EXPECT_EQ(facts(), nothing);
}

}  // namespace
}  // namespace embrix
