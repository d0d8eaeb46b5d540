#include "sampling/process_details_reader.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "fakes/scripted_host.h"

namespace embrix {
namespace {

class ProcessDetailsReaderTest : public testing::Test {
 protected:
  ProcessDetailsReaderTest() { world.add(10, "/opt/a"); }

  ProcessFacts facts(double now = 5000) {
    const ProcessSample sample{
        .pid = 10, .ppid = 2, .uid = 501, .name = "a", .path = "/opt/a", .startTime = 1000};
    return reader.facts(sample, processID(10, 1000), now);
  }
  std::size_t asked(const std::string& call) const {
    return static_cast<std::size_t>(std::count_if(
        world.log.begin(), world.log.end(),
        [&](const std::string& entry) { return entry.starts_with("processDetails." + call); }));
  }

  ScriptedHost world;
  Host host = world.host();
  ProcessDetailsReader reader{*host.processDetails};
};

TEST_F(ProcessDetailsReaderTest, TakesWhatTheSampleKnows) {
  const ProcessFacts read = facts();
  EXPECT_EQ(read.id, "10-1000");
  EXPECT_EQ(read.pid, 10);
  EXPECT_EQ(read.ppid, 2);
  EXPECT_EQ(read.uid, 501u);
  EXPECT_EQ(read.name, "a");
  EXPECT_EQ(read.path, "/opt/a");
  EXPECT_EQ(read.uptime, 4000);
}

TEST_F(ProcessDetailsReaderTest, ServerOnLoopbackIsNotExposedAndOneOnEveryAddressIs) {
  world.find(10)->listening = {{3000, false}, {8080, true}};
  const ProcessFacts read = facts();
  EXPECT_EQ(read.ports, (std::vector<int>{3000, 8080}));
  EXPECT_EQ(read.exposedPorts, (std::vector<int>{8080}));
}

TEST_F(ProcessDetailsReaderTest, PortOnBothFamiliesStandsOnce) {
  world.find(10)->listening = {{9000, true}, {3000, true}, {3000, true}, {9000, false}};
  const ProcessFacts read = facts();
  EXPECT_EQ(read.ports, (std::vector<int>{3000, 9000}));
  EXPECT_EQ(read.exposedPorts, (std::vector<int>{3000, 9000}));
}

TEST_F(ProcessDetailsReaderTest, ArgumentsAndDirectoryAreReadOnceAndPortsEveryTime) {
  world.find(10)->arguments = {"a", "--b"};
  world.find(10)->directory = "/home";
  facts();
  world.find(10)->arguments = {"changed"};
  world.find(10)->listening = {{1, false}};
  const ProcessFacts read = facts();
  EXPECT_EQ(read.arguments, (std::vector<std::string>{"a", "--b"}));
  EXPECT_EQ(read.directory, "/home");
  EXPECT_EQ(read.ports, (std::vector<int>{1}));
  EXPECT_EQ(asked("arguments"), 1u);
  EXPECT_EQ(asked("directory"), 1u);
  EXPECT_EQ(asked("listening"), 2u);
}

TEST_F(ProcessDetailsReaderTest, EmptyDirectoryIsNone) {
  world.find(10)->directory = "";
  EXPECT_FALSE(facts().directory);
}

TEST_F(ProcessDetailsReaderTest, BytesThatAreNoUTF8AreRepaired) {
  world.find(10)->arguments = {"\xff", "ok"};
  world.find(10)->directory = "/\xfe";
  const ProcessFacts read = facts();
  EXPECT_EQ(read.arguments, (std::vector<std::string>{"\uFFFD", "ok"}));
  EXPECT_EQ(read.directory, "/\uFFFD");
}

TEST_F(ProcessDetailsReaderTest, PruneForgetsWhoIsNotKept) {
  facts();
  HashSet<SharedText> keep;
  keep.insert(processID(10, 1000));
  reader.prune(keep);
  EXPECT_EQ(reader.cachedCount(), 1u);
  keep.clear();
  reader.prune(keep);
  EXPECT_EQ(reader.cachedCount(), 0u);
}

}  // namespace
}  // namespace embrix
