#include "hosts/linux/sleep_journal.h"

#include <gtest/gtest.h>

#include <string>

#include "captured_tree.h"

namespace embrix {
namespace {

TEST(SleepJournalTest, WithoutAJournalThereAreNoEntries) {
  CapturedTree tree;
  EXPECT_TRUE(readSleepEntries(tree.root(), 100).empty());
  EXPECT_TRUE(readSleepEntries(tree.root() + "/missing", 100).empty());
}

TEST(SleepJournalTest, FilesThatAreNoJournalsHaveNoEntries) {
  CapturedTree tree;
  const std::string folder = "var/log/journal/0123456789abcdef0123456789abcdef/";
  tree.write(folder + "system.journal", "");
  tree.write(folder + "system@1.journal", std::string(100'000, 'x'));
  tree.write(folder + "system@2.journal", "LPKSHHRH" + std::string(5000, '\0'));
  tree.write(folder + "user-1000.journal~", "LPKSHHRH" + std::string(5000, '\xff'));
  EXPECT_TRUE(readSleepEntries(tree.root(), 100).empty());
}

}  // namespace
}  // namespace embrix
