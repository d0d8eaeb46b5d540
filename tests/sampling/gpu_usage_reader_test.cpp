#include "sampling/gpu_usage_reader.h"

#include <limits>
#include <map>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "fakes/captures.h"
#include "fakes/scripted_host.h"
#include "ioreg_text.h"

namespace embrix {
namespace {

constexpr std::uint64_t kMost = std::numeric_limits<std::uint64_t>::max();

using Times = std::vector<std::optional<std::uint64_t>>;
using Deltas = std::map<std::int32_t, std::uint64_t>;

class GPUUsageReaderTest : public testing::Test {
 protected:
  Deltas read() {
    const auto& deltas = reader.read();
    return {deltas.begin(), deltas.end()};
  }

  // The clients are these from now on.
  Deltas readWith(std::vector<GpuClient> clients) {
    world.gpuClients = std::move(clients);
    return read();
  }

  static GpuClient safari(Times times) { return {"pid 123, Safari", std::move(times)}; }

  ScriptedHost world;
  Host host = world.host();
  GPUUsageReader reader{*host.gpu};
};

TEST_F(GPUUsageReaderTest, TheFirstReadChargesNobody) {
  EXPECT_EQ(readWith({safari(Times{5000})}), Deltas{});
}

TEST_F(GPUUsageReaderTest, LaterReadsTellTheDifference) {
  readWith({safari(Times{5000})});
  EXPECT_EQ(readWith({safari(Times{5700})}), (Deltas{{123, 700}}));
  EXPECT_EQ(readWith({safari(Times{5701})}), (Deltas{{123, 1}}));
}

TEST_F(GPUUsageReaderTest, EqualTotalsHaveNoEntry) {
  readWith({safari(Times{5000})});
  EXPECT_EQ(read(), Deltas{});
}

TEST_F(GPUUsageReaderTest, ATotalThatWentDownHasNoEntryAndIsTheNewBase) {
  readWith({safari(Times{5000})});
  EXPECT_EQ(readWith({safari(Times{3000})}), Deltas{});
  EXPECT_EQ(readWith({safari(Times{3100})}), (Deltas{{123, 100}}));
}

TEST_F(GPUUsageReaderTest, APidThatComesBackStartsAnew) {
  readWith({safari(Times{5000})});
  EXPECT_EQ(readWith({}), Deltas{});
  EXPECT_EQ(readWith({safari(Times{9000})}), Deltas{});
}

TEST_F(GPUUsageReaderTest, AllContextsOfAllClientsOfAProcessCount) {
  readWith({safari(Times{100, 200}), safari(Times{300})});
  EXPECT_EQ(readWith({safari(Times{110, 220}), safari(Times{330})}), (Deltas{{123, 60}}));
}

TEST_F(GPUUsageReaderTest, AContextWithoutANumberAddsNothing) {
  readWith({safari(Times{100, std::nullopt})});
  EXPECT_EQ(readWith({safari(Times{110, std::nullopt})}), (Deltas{{123, 10}}));
}

TEST_F(GPUUsageReaderTest, AClientWithoutContextsYetGivesItsProcessABase) {
  readWith({safari(Times{})});
  EXPECT_EQ(readWith({safari(Times{700})}), (Deltas{{123, 700}}));
}

TEST_F(GPUUsageReaderTest, AClientWithoutAListOrACreatorIsPassedOver) {
  const GpuClient withoutList{"pid 124, Mail", std::nullopt};
  const GpuClient withoutCreator{std::nullopt, Times{999}};
  readWith({withoutList, withoutCreator, safari(Times{1})});
  EXPECT_EQ(readWith({{"pid 124, Mail", Times{50}}, safari(Times{2})}), (Deltas{{123, 1}}));
}

TEST_F(GPUUsageReaderTest, WithoutProcessorsAllMapsAreEmpty) {
  EXPECT_EQ(read(), Deltas{});
  EXPECT_EQ(read(), Deltas{});
}

TEST_F(GPUUsageReaderTest, SumsStopAtTheLargestNumberInsteadOfWrapping) {
  readWith({safari(Times{kMost - 10})});
  EXPECT_EQ(readWith({safari(Times{kMost - 10, 100})}), (Deltas{{123, 10}}));
}

TEST_F(GPUUsageReaderTest, PidsOfCreators) {
  struct Case {
    std::string creator;
    std::optional<std::int32_t> pid;
  };
  for (const auto& [creator, pid] : {
           Case{"pid 123, Safari", 123}, Case{"pid 123", 123}, Case{"pid 0, kernel_task", 0},
           Case{"pid 007abc", 7}, Case{"pid 2147483647, x", 2147483647},
           Case{"pid 2147483648, x", std::nullopt},
           Case{"pid 99999999999999999999999, x", std::nullopt}, Case{"pid , x", std::nullopt},
           Case{"pid -5, x", std::nullopt}, Case{"pid +5, x", std::nullopt},
           Case{"pid  5, x", std::nullopt}, Case{"pid", std::nullopt},
           Case{"PID 5, x", std::nullopt}, Case{" pid 5, x", std::nullopt}, Case{"", std::nullopt},
           Case{"pid \xD9\xA3, x", std::nullopt},  // the Arabic digit three
       }) {
    EXPECT_EQ(GPUUsageReader::pidOf(creator), pid) << creator;
  }
}

// One client for each entry of the tree, whatever the order of its keys.
std::vector<GpuClient> clientsOf(std::string_view text) {
  std::vector<GpuClient> clients;
  for (auto place = text.find("+-o "); place != std::string_view::npos;) {
    const auto next = text.find("+-o ", place + 1);
    const auto properties = ioregProperties(text.substr(place, next - place));
    GpuClient client{.creator = textAt(properties, "IOUserClientCreator"),
                     .accumulatedTimes = std::nullopt};
    if (const auto* usage = listAt(properties, "AppUsage")) {
      client.accumulatedTimes.emplace();
      for (const Property& context : *usage) {
        const auto time = integerAt(std::get<PropertyMap>(context.value), "accumulatedGPUTime");
        client.accumulatedTimes->push_back(static_cast<std::uint64_t>(time.value()));
      }
    }
    clients.push_back(std::move(client));
    place = next;
  }
  return clients;
}

// WindowServer has two clients with three contexts in all: 1.7 s of its past, 0.3 s of which come
// in the tick. runningboardd has a client without contexts, and one client has no creator.
TEST_F(GPUUsageReaderTest, ClientsOfARealMachine) {
  std::string text = captureOr("05_gpu/agx_userclients_shapes.txt", R"(+-o AGXDeviceUserClient
      "AppUsage" = ()
      "IOUserClientCreator" = "pid 409, runningboardd"
+-o AGXDeviceUserClient
      "AppUsage" = ({"API"="Metal","accumulatedGPUTime"=1000000000},{"API"="Metal","accumulatedGPUTime"=500000000})
      "IOUserClientCreator" = "pid 19371, WindowServer"
+-o AGXDeviceUserClient
      "AppUsage" = ({"API"="Metal","accumulatedGPUTime"=200000000})
      "IOUserClientCreator" = "pid 19371, WindowServer"
+-o AGXDeviceUserClient
      "AppUsage" = ({"API"="Metal","accumulatedGPUTime"=999999999999})
)");
  ASSERT_EQ(clientsOf(text).size(), 4u);
  EXPECT_EQ(readWith(clientsOf(text)), Deltas{});
  const std::string_view before = "\"accumulatedGPUTime\"=200000000";
  text.replace(text.find(before), before.size(), "\"accumulatedGPUTime\"=500000000");
  EXPECT_EQ(readWith(clientsOf(text)), (Deltas{{19371, 300000000}}));
}

}  // namespace
}  // namespace embrix
