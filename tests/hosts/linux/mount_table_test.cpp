#include "hosts/linux/mount_table.h"

#include <gtest/gtest.h>

namespace embrix {
namespace {

constexpr std::string_view kTable =
    "22 1 254:0 / / rw,relatime shared:1 - ext4 /dev/vda rw\n"
    "23 22 0:21 / /home rw - btrfs /dev/vdb rw\n"
    "24 23 0:22 / /home/ada/My\\040Disk rw - ext4 /dev/vdc rw\n"
    "25 22 0:23 / /odd\\134x\\012y rw - tmpfs tmpfs rw\n"
    "26 22 0:24 / /half\\04 rw - tmpfs tmpfs rw\n"
    "broken line\n"
    "27 22 0:25 / relative rw - tmpfs tmpfs rw\n";

TEST(MountTableTest, APathHoldsTheVolumesMountedAtOrBelowIt) {
  const MountTable table(kTable);
  const struct {
    std::string_view path;
    bool holds;
  } rows[] = {
      {"/", true},
      {"/home", true},
      {"/home/ada", true},
      {"/home/ada/My Disk", true},
      {"/home/ada/My Disk/x", false},
      {"/home/ada/My", false},
      {"/home/ad", false},
      {"/homes", false},
      {"/odd\\x\ny", true},
      {"/half\\04", true},
      {"relative", false},
  };
  for (const auto& row : rows) EXPECT_EQ(table.holdsVolume(row.path), row.holds) << row.path;
}

TEST(MountTableTest, APathIsOnTheDeepestVolumeAboveIt) {
  const MountTable table(kTable);
  EXPECT_EQ(table.volumeFolder("/etc/passwd"), "/");
  EXPECT_EQ(table.volumeFolder("/home/ada/x"), "/home");
  EXPECT_EQ(table.volumeFolder("/home/ada/My Disk/x"), "/home/ada/My Disk");
  EXPECT_EQ(table.volumeFolder("/home/ada/My Disks/x"), "/home");
  EXPECT_EQ(table.volumeFolder("relative"), std::nullopt);
  EXPECT_EQ(MountTable("").volumeFolder("/x"), std::nullopt);
}

TEST(MountTableTest, AnyBytesAreATable) {
  const MountTable table(std::string_view("1 2 3 4 /\xff\\999\\\n\0 a b c /x", 24));
  EXPECT_TRUE(table.holdsVolume("/\xff\\999\\"));
}

}  // namespace
}  // namespace embrix
