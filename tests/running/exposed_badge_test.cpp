#include "running/exposed_badge.h"

#include <gtest/gtest.h>

namespace embrix {
namespace {

TEST(ExposedBadgeTest, NamesEachPort) {
  EXPECT_EQ(ExposedBadge::explanation({3000, 8080}),
            "Listening on every network address (:3000, :8080), so anyone on the same Wi-Fi can "
            "reach it, not just this Mac. Bind it to 127.0.0.1 to keep it private.");
  EXPECT_EQ(ExposedBadge::explanation({3000}),
            "Listening on every network address (:3000), so anyone on the same Wi-Fi can reach "
            "it, not just this Mac. Bind it to 127.0.0.1 to keep it private.");
}

}  // namespace
}  // namespace embrix
