#include "hosts/linux/trash_info.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <ctime>

namespace embrix {
namespace {

class TrashInfoTest : public testing::Test {
 protected:
  TrashInfoTest() {
    if (const char* zone = std::getenv("TZ")) zone_ = zone;
    useZone("UTC0");
  }
  ~TrashInfoTest() override {
    if (zone_.empty()) {
      ::unsetenv("TZ");
    } else {
      ::setenv("TZ", zone_.c_str(), 1);
    }
    ::tzset();
  }
  static void useZone(const char* zone) {
    ::setenv("TZ", zone, 1);
    ::tzset();
  }

 private:
  std::string zone_;
};

TEST_F(TrashInfoTest, TheFileTellsWhereAndWhen) {
  EXPECT_EQ((TrashInfo{.path = "/home/ada/.npm/_cacache", .deleted = 1'750'000'000.9}.text()),
            "[Trash Info]\nPath=/home/ada/.npm/_cacache\nDeletionDate=2025-06-15T15:06:40\n");
}

TEST_F(TrashInfoTest, TheDateIsLocal) {
  useZone("TST-2");
  EXPECT_EQ((TrashInfo{.path = "x", .deleted = 0}.text()),
            "[Trash Info]\nPath=x\nDeletionDate=1970-01-01T02:00:00\n");
}

TEST_F(TrashInfoTest, BytesThatAreNotPlainAreEscaped) {
  EXPECT_EQ((TrashInfo{.path = "/a b\nc%d\xc3\xa4\xff;#?[]~-_.!*'()", .deleted = 0}.text()),
            "[Trash Info]\nPath=/a%20b%0Ac%25d%C3%A4%FF%3B%23%3F%5B%5D~-_.!*'()\n"
            "DeletionDate=1970-01-01T00:00:00\n");
}

}  // namespace
}  // namespace embrix
