#include "sampling/mac_info.h"

#include <limits>
#include <string>

#include <gtest/gtest.h>

#include "fakes/captures.h"

namespace embrix {
namespace {

TEST(MacInfoTest, EveryFact) {
  const MachineFacts facts{.productName = "MacBook Pro (14-inch, M3, 2023)",
                           .chip = "Apple M3",
                           .performanceCores = 4,
                           .efficiencyCores = 6,
                           .memoryBytes = 16ULL << 30,
                           .systemName = "macOS",
                           .systemMajor = 15,
                           .systemMinor = 3,
                           .systemPatch = 1,
                           .model = "Mac15,3"};
  EXPECT_EQ(MacInfo::from(facts), (MacInfo{.name = "MacBook Pro (14-inch, M3, 2023)",
                                           .chip = "Apple M3",
                                           .performanceCores = 4,
                                           .efficiencyCores = 6,
                                           .memoryGB = 16,
                                           .osVersion = "macOS 15.3.1",
                                           .model = "Mac15,3"}));
}

TEST(MacInfoTest, AWordForEachFactThatIsUnreadable) {
  MachineFacts facts;
  facts.systemName = "macOS";
  facts.systemMajor = 15;
  EXPECT_EQ(MacInfo::from(facts), (MacInfo{.name = "Mac",
                                           .chip = "Apple silicon",
                                           .performanceCores = 0,
                                           .efficiencyCores = 0,
                                           .memoryGB = 0,
                                           .osVersion = "macOS 15.0",
                                           .model = ""}));
}

TEST(MacInfoTest, AnEmptyNameOrChipCountsAsUnreadable) {
  const auto info = MacInfo::from({.productName = "", .chip = "", .systemName = "", .model = ""});
  EXPECT_EQ(info.name, "Mac");
  EXPECT_EQ(info.chip, "Apple silicon");
}

TEST(MacInfoTest, BytesThatAreNoUTF8AreReplaced) {
  const auto info = MacInfo::from(
      {.productName = "Mac\xFF", .chip = "Apple \xE2\x82", .systemName = "", .model = "\xC3("});
  EXPECT_EQ(info.name, "Mac\uFFFD");
  EXPECT_EQ(info.chip, "Apple \uFFFD");
  EXPECT_EQ(info.model, "\uFFFD(");
}

TEST(MacInfoTest, NegativeCoreCountsCountAsUnknown) {
  const auto info =
      MacInfo::from({.performanceCores = -1, .efficiencyCores = -2, .systemName = ""});
  EXPECT_EQ(info.performanceCores, 0);
  EXPECT_EQ(info.efficiencyCores, 0);
}

TEST(MacInfoTest, MemoryIsInWholeGigabytes) {
  EXPECT_EQ(MacInfo::from({.memoryBytes = (16ULL << 30) - 1, .systemName = ""}).memoryGB, 15);
  constexpr auto kMost = std::numeric_limits<std::uint64_t>::max();
  EXPECT_EQ(MacInfo::from({.memoryBytes = kMost, .systemName = ""}).memoryGB,
            std::numeric_limits<int>::max());
}

TEST(MacInfoTest, APatchOfZeroIsNotWritten) {
  MachineFacts facts{.systemName = "macOS", .systemMajor = 15, .systemMinor = 3};
  for (const auto& [patch, expected] :
       {std::pair(0, "macOS 15.3"), std::pair(1, "macOS 15.3.1"), std::pair(-1, "macOS 15.3")}) {
    facts.systemPatch = patch;
    EXPECT_EQ(MacInfo::from(facts).osVersion, expected);
  }
}

TEST(MacInfoTest, ShortNames) {
  struct Case {
    std::string name;
    std::string expected;
  };
  for (const auto& [name, expected] : {
           Case{"MacBook Pro (14-inch, M3, 2023)", "MacBook Pro 14-inch"},
           Case{"Mac mini (M2, 2023)", "Mac mini"},
           Case{"iMac", "iMac"},
           Case{" iMac ", " iMac "},
           Case{"MacBook Air (13-inch)", "MacBook Air 13-inch"},
           Case{"MacBook Air (M1, 13-inch)", "MacBook Air"},
           Case{"MacBook Air (, ,13-inch)", "MacBook Air"},
           Case{"MacBook Air (,13-inch, 2020)", "MacBook Air 13-inch"},
           Case{"MacBook Air (  13-inch  )  ", "MacBook Air 13-inch"},
           Case{"MacBook Air(13-inch", "MacBook Air 13-inch"},
           Case{"  Mac  Studio \t(2022)", "Mac  Studio"},
           Case{"Mac ()", "Mac"},
           Case{"Mac (", "Mac"},
           Case{"(14-inch)", " 14-inch"},
           Case{"A (B) (14-inch)", "A B) (14-inch"},
           Case{"", ""},
       }) {
    EXPECT_EQ((MacInfo{.name = name}).shortName(), expected) << name;
  }
}

// Product names as device trees have them, in quotes.
TEST(MacInfoTest, ShortNamesOfRealMachines) {
  const std::string text = captureOr("10_misc/product_names.txt",
                                     "\"product-name\" = <\"MacBook Pro (14-inch, 2024)\">\n"
                                     "\"product-name\" = <\"MacBook Pro (14-inch, Nov 2024)\">\n"
                                     "\"product-name\" = <\"MacBook Pro (14-inch, Nov 2023)\">\n"
                                     "\"product-name\" = <\"MacBook Pro (14-inch, M5 Pro)\">\n"
                                     "\"product-name\" = <\"Mac mini (2024)\">\n"
                                     "\"product-name\" = <\"MacBookPro16,1\">\n");
  std::vector<std::string> names;
  const std::string_view key = "\"product-name\" = <\"";
  for (auto at = text.find(key); at != std::string::npos; at = text.find(key, at + 1)) {
    const auto start = at + key.size();
    names.push_back(MacInfo{.name = text.substr(start, text.find('"', start) - start)}.shortName());
  }
  EXPECT_EQ(names, (std::vector<std::string>{"MacBook Pro 14-inch", "MacBook Pro 14-inch",
                                             "MacBook Pro 14-inch", "MacBook Pro 14-inch",
                                             "Mac mini", "MacBookPro16,1"}));
}

}  // namespace
}  // namespace embrix
