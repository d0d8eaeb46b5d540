#include "hosts/replay/recording_format.h"

#include <cmath>
#include <limits>
#include <variant>

#include <gtest/gtest.h>

#include "base/json.h"

namespace embrix {
namespace {

constexpr std::string_view kHeader =
    R"({"embrix":"recording","version":1,"host":"macos","uptime":5.5,"wallTime":1750000000.25,)"
    R"("machine":{"chip":"Apple M3","performanceCores":4,"memoryBytes":17179869184,)"
    R"("systemName":"macOS","systemMajor":14,"systemMinor":5,"systemPatch":1},)"
    R"("user":{"uid":501,"homeDirectory":"/Users/ada"},"ticksToNS":41.666666666666664,)"
    R"("pageSize":16384,"physicalBytes":17179869184,"hasBattery":true,"hasSmc":false,)"
    R"("sensors":["PMU tdie1",""],"baseFolders":{"cache":"/c","data":"/d"}})";

constexpr std::string_view kTick =
    R"({"tick":2,"uptime":[7.5,7.75],"wallTime":[1750000002.25],"processes":[{"gone":[9],)"
    R"("changed":[{"pid":412,"usage":[1,2,3,4,5,18446744073709551615]},{"pid":7}],)"
    R"("added":[{"place":0,"pid":500,"ppid":1,"uid":501,"startTime":1750000001,)"
    R"("commandName":{"base64":"/w=="},"usage":[0,0,0,0,0]}]}],)"
    R"("about":[{"of":500,"answer":{"path":"/bin/a","arguments":["a",{"base64":"/w=="}],)"
    R"("listening":[{"port":3000,"exposed":true}],"responsiblePID":-1}}],)"
    R"("bundles":[{"of":"/A.app","answer":{"name":"A"}},{"of":"/B.app"}],)"
    R"("programs":[{"of":"/b","answer":{"name":"B","identifier":"b","path":"/b.desktop"}}],)"
    R"("applicationPaths":[{"of":"a","answer":"/A.app"}],"energySamples":[true],)"
    R"("energyIntervals":[{"channels":[{"name":"CPU Energy","unit":"mJ","value":-1}],)"
    R"("channelSeconds":[2.0]}],"batteryRegistry":[{"Amperage":-5,"BatteryData":{"map":{"Cells":[1,2.0]}},)"
    R"("Updated":{"date":3.0}}],"powerSources":[[{"Name":"A"}]],)"
    R"("temperatures":[{"of":0,"answer":[41.5,null]},{"of":1,"answer":["nan"]}],)"
    R"("smc":[{"of":""},{"of":"YWJj","answer":"AAE="}],"thermalState":["serious"],)"
    R"("gpuStatistics":[null],"gpuClients":[[{"creator":"pid 1, a","accumulatedTimes":[1,null]},)"
    R"({}]],"memoryCounters":[{"internalPages":1,"purgeablePages":2,"wiredPages":3,)"
    R"("compressorPages":4}],"memoryFreeLevel":[50],"assertions":[[{"pid":412,)"
    R"("assertions":[{"AssertName":"x"}]}]],"files":[{"of":"/f","answer":"text"}],)"
    R"("resolvedPaths":[{"of":"/l","answer":"/f"},{"of":"/none"}],)"
    R"("existing":[{"of":"/f","answer":true}],"fileFacts":[{"of":"/d","answer":{)"
    R"("kind":"folder","modified":1.5,"device":1,"inode":18446744073709551615,"born":-1}},)"
    R"({"of":"/o","answer":{"kind":"other","modified":0.0,"device":0,"inode":2}}],)"
    R"("folderLists":[{"of":"/d","answer":[{"name":{"base64":"/w=="},"kind":"file",)"
    R"("modified":2.0,"hidden":false},{"name":".l","kind":"link","modified":3.0,)"
    R"("hidden":true}]}],"folderSizes":[{"of":"/d","answer":4096}],)"
    R"("powerLog":"Sleep\n","commandOutputs":[{"of":["/bin/ps","-ax"],"answer":"PID"}],)"
    R"("commandStarts":[{"of":["/bin/open"],"answer":true}]})";

RecordingHeader headerOf(std::string_view line) {
  auto read = decodeHeader(line);
  if (const auto* problem = std::get_if<RecordingProblem>(&read)) ADD_FAILURE() << problem->text;
  return std::get<RecordingHeader>(read);
}

RecordedTick tickOf(std::string_view line) {
  auto read = decodeTick(line);
  if (const auto* problem = std::get_if<RecordingProblem>(&read)) ADD_FAILURE() << problem->text;
  return std::get<RecordedTick>(read);
}

template <typename Read>
std::string problemOf(const Read& read) {
  const auto* problem = std::get_if<RecordingProblem>(&read);
  return problem == nullptr ? "" : problem->text;
}

// The line without that key, which stands at the JSON pointer.
std::string without(std::string_view line, const char* pointer) {
  return Json::parse(line).patch(Json{{{"op", "remove"}, {"path", pointer}}}).dump();
}

std::string with(std::string_view line, const char* pointer, const char* value) {
  Json json = Json::parse(line);
  json[Json::json_pointer(pointer)] = Json::parse(value);
  return json.dump();
}

TEST(RecordingFormatTest, AHeaderIsWrittenInThisForm) {
  const RecordingHeader header{.hostName = "macos",
                               .uptime = 5.5,
                               .wallTime = 1'750'000'000.25,
                               .machine = {.productName = std::nullopt,
                                           .chip = "Apple M3",
                                           .performanceCores = 4,
                                           .efficiencyCores = std::nullopt,
                                           .memoryBytes = 16ULL << 30,
                                           .systemName = "macOS",
                                           .systemMajor = 14,
                                           .systemMinor = 5,
                                           .systemPatch = 1,
                                           .model = std::nullopt},
                               .user = {.uid = 501, .homeDirectory = "/Users/ada"},
                               .ticksToNS = 125.0 / 3,
                               .pageSize = 16384,
                               .physicalBytes = 16ULL << 30,
                               .hasBattery = true,
                               .hasSmc = false,
                               .sensors = {"PMU tdie1", ""},
                               .baseFolders = BaseFolders{.cache = "/c", .data = "/d"}};
  EXPECT_EQ(encodeHeader(header), kHeader);
  EXPECT_EQ(headerOf(kHeader), header);
}

TEST(RecordingFormatTest, ATickIsWrittenInThisForm) {
  const RecordedTick tick = tickOf(kTick);
  EXPECT_EQ(encodeTick(tick), kTick);
  EXPECT_EQ(tick.number, 2U);
  EXPECT_EQ(tick.uptime, (std::vector<double>{7.5, 7.75}));
  ASSERT_EQ(tick.processes.size(), 1U);
  EXPECT_EQ(tick.processes[0].all, std::nullopt);
  EXPECT_EQ(tick.processes[0].gone, std::vector<std::int32_t>{9});
  EXPECT_EQ(tick.processes[0].changed,
            (std::vector<ChangedCounters>{{412, RawUsage{1, 2, 3, 4, 5, UINT64_MAX}}, {7, {}}}));
  const RawProcess added{500, 1, 501, 1'750'000'001, "\xff", RawUsage{}};
  EXPECT_EQ(tick.processes[0].added, (std::vector<PlacedProcess>{{0, added}}));
  EXPECT_EQ(tick.lasting.about.at(500),
            (ProcessAnswers{"/bin/a", {"a", "\xff"}, std::nullopt, {{3000, true}}, -1}));
  EXPECT_EQ(tick.lasting.bundles.at("/A.app")->name, "A");
  EXPECT_EQ(tick.lasting.bundles.at("/B.app"), std::nullopt);
  EXPECT_EQ(tick.energyIntervals, (std::vector<std::optional<EnergyInterval>>{
                                      {{{{"CPU Energy", "mJ", -1}}, std::vector<double>{2.0}}}}));
  const PropertyMap registry{{"Amperage", -5},
                             {"BatteryData", PropertyMap{{"Cells", PropertyList{1, 2.0}}}},
                             {"Updated", PropertyDate{3}}};
  EXPECT_EQ(tick.batteryRegistry.at(0), registry);
  EXPECT_EQ(tick.temperatures.at(0), (std::vector<std::optional<double>>{41.5, std::nullopt}));
  EXPECT_TRUE(std::isnan(*tick.temperatures.at(1).at(0)));
  SmcPacketBytes question{'a', 'b', 'c'};
  SmcPacketBytes answer{0, 1};
  EXPECT_EQ(tick.lasting.smc.at(question), answer);
  EXPECT_EQ(tick.lasting.smc.at(SmcPacketBytes{}), std::nullopt);
  EXPECT_EQ(tick.lasting.commandOutputs.at({"/bin/ps", "-ax"}), "PID");
  EXPECT_EQ(tick.lasting.powerLog, "Sleep\n");
  EXPECT_EQ(tick.lasting.resolvedPaths.at("/l"), "/f");
  EXPECT_EQ(tick.lasting.resolvedPaths.at("/none"), std::nullopt);
  EXPECT_EQ(tick.lasting.existing.at("/f"), true);
  EXPECT_EQ(tick.lasting.fileFacts.at("/d"),
            (FileFacts{FileKind::folder, 1.5, {.device = 1, .inode = UINT64_MAX, .born = -1}}));
  EXPECT_EQ(tick.lasting.fileFacts.at("/o"), (FileFacts{FileKind::other, 0, {.inode = 2}}));
  EXPECT_EQ(tick.lasting.folderLists.at("/d"),
            (std::vector<FolderEntry>{{"\xff", FileKind::file, 2, false},
                                      {".l", FileKind::link, 3, true}}));
  EXPECT_EQ(tick.lasting.folderSizes.at("/d"), 4096);
}

TEST(RecordingFormatTest, WhatWasNotAskedIsNotWritten) {
  EXPECT_EQ(encodeTick({.number = 3}), R"({"tick":3})");
  EXPECT_EQ(tickOf(R"({"tick":3})"), RecordedTick{.number = 3});
}

TEST(RecordingFormatTest, AnEmptyListOfTimesIsNotAMissingOne) {
  RecordedTick tick{.number = 1};
  tick.gpuClients = {{{.creator = "", .accumulatedTimes = {{}}}, {}}, {}};
  EXPECT_EQ(tickOf(encodeTick(tick)), tick);
}

TEST(RecordingFormatTest, DoublesThatJSONLacksAreCoded) {
  RecordedTick tick{.number = 1};
  const double infinity = std::numeric_limits<double>::infinity();
  tick.temperatures[0] = {infinity, -infinity, -0.0, 5e-324, 1.0 / 3};
  tick.batteryRegistry = {PropertyMap{{"odd", infinity}, {"date", PropertyDate{-infinity}}}};
  const RecordedTick read = tickOf(encodeTick(tick));
  EXPECT_EQ(read, tick);
  EXPECT_TRUE(std::signbit(*read.temperatures.at(0)[2]));
  tick.temperatures[0] = {std::nan("")};
  EXPECT_TRUE(std::isnan(*tickOf(encodeTick(tick)).temperatures.at(0)[0]));
}

TEST(RecordingFormatTest, EveryByteOfATextSurvives) {
  std::string bytes;
  for (int value = 0; value < 256; ++value) bytes += static_cast<char>(value);
  for (const std::string& text : {bytes, std::string("\0", 1), std::string("\u00e9\U0001F525"),
                                  std::string("\"\\\n"), std::string("\xed\xa0\x80")}) {
    RecordedTick tick{.number = 1};
    tick.lasting.powerLog = text;
    tick.lasting.files[text] = text;
    tick.batteryRegistry = {PropertyMap{{text, text}}};
    EXPECT_EQ(tickOf(encodeTick(tick)), tick);
    EXPECT_EQ(encodeTick(tick).find('\n'), std::string::npos);
  }
}

TEST(RecordingFormatTest, AKeyThatLooksCodedIsCoded) {
  RecordedTick tick{.number = 1};
  tick.batteryRegistry = {PropertyMap{{"base64:", 1}, {"base64:/w==", 2}, {"\xff", 3}}};
  EXPECT_EQ(tickOf(encodeTick(tick)), tick);
}

TEST(RecordingFormatTest, MapsInMapsAreToldFromCodedValues) {
  RecordedTick tick{.number = 1};
  const PropertyMap looksCoded{{"base64", "x"}, {"date", 1}, {"map", PropertyMap{{"map", 1}}}};
  tick.batteryRegistry = {PropertyMap{{"a", looksCoded}, {"b", PropertyList{looksCoded}}}};
  EXPECT_EQ(tickOf(encodeTick(tick)), tick);
}

Property nested(int depth) {
  Property property = PropertyList{};
  for (int i = 0; i < depth; ++i) {
    property =
        i % 2 == 0 ? Property(PropertyList{property}) : Property(PropertyMap{{"a", property}});
  }
  return property;
}

TEST(RecordingFormatTest, PropertiesAreNestedSoDeeplyAndNoDeeper) {
  RecordedTick tick{.number = 1};
  tick.batteryRegistry = {PropertyMap{{"a", nested(31)}}};
  EXPECT_EQ(tickOf(encodeTick(tick)), tick);
  // What is written can always be read.
  tick.batteryRegistry = {PropertyMap{{"a", nested(500)}}};
  EXPECT_EQ(problemOf(decodeTick(encodeTick(tick))), "");
  const std::string deep = std::string(100, '[') + std::string(100, ']');
  EXPECT_EQ(problemOf(decodeTick(R"({"tick":1,"batteryRegistry":[{"a":)" + deep + "}]}")),
            "batteryRegistry[0] is nested too deeply");
}

TEST(RecordingFormatTest, UnknownKeysArePassedOver) {
  EXPECT_EQ(headerOf(with(kHeader, "/later", R"({"a":[1]})")), headerOf(kHeader));
  const std::string tick = with(with(kTick, "/later", "[null]"), "/processes/0/added/0/cpu", "3");
  EXPECT_EQ(encodeTick(tickOf(tick)), kTick);
}

TEST(RecordingFormatTest, AMissingKeyOfTheHeaderIsAProblem) {
  for (const char* key : {"version", "host", "uptime", "wallTime", "machine", "user", "ticksToNS",
                          "pageSize", "physicalBytes", "hasBattery", "hasSmc"}) {
    EXPECT_EQ(problemOf(decodeHeader(without(kHeader, (std::string("/") + key).c_str()))),
              std::string(key) + " is missing");
  }
  EXPECT_EQ(problemOf(decodeHeader(without(kHeader, "/machine/systemName"))),
            "machine.systemName is missing");
  EXPECT_EQ(problemOf(decodeHeader(without(kHeader, "/user/uid"))), "user.uid is missing");
}

TEST(RecordingFormatTest, AMissingKeyOfATickIsAProblem) {
  struct Case {
    const char* pointer;
    const char* problem;
  };
  const Case cases[] = {
      {"/tick", "tick is missing"},
      {"/processes/0/changed/0/pid", "processes[0].changed[0].pid is missing"},
      {"/processes/0/added/0/place", "processes[0].added[0].place is missing"},
      {"/processes/0/added/0/startTime", "processes[0].added[0].startTime is missing"},
      {"/about/0/of", "about[0].of is missing"},
      {"/about/0/answer", "about[0].answer is missing"},
      {"/about/0/answer/listening/0/port", "about[0].answer.listening[0].port is missing"},
      {"/programs/0/answer/path", "programs[0].answer.path is missing"},
      {"/energyIntervals/0/channels/0/unit", "energyIntervals[0].channels[0].unit is missing"},
      {"/fileFacts/0/answer/inode", "fileFacts[0].answer.inode is missing"},
      {"/folderLists/0/answer/0/hidden", "folderLists[0].answer[0].hidden is missing"},
      {"/memoryCounters/0/wiredPages", "memoryCounters[0].wiredPages is missing"},
      {"/assertions/0/0/pid", "assertions[0][0].pid is missing"},
  };
  for (const Case& test : cases) {
    EXPECT_EQ(problemOf(decodeTick(without(kTick, test.pointer))), test.problem);
  }
}

TEST(RecordingFormatTest, OnlyTheFirstVersionIsKnown) {
  struct Case {
    const char* version;
    const char* problem;
  };
  const Case cases[] = {
      {"2", "version 2 is newer than this program, which reads version 1"},
      {"2147483647", "version 2147483647 is newer than this program, which reads version 1"},
      {"0", "version is no whole number from 1"},
      {"-1", "version is no whole number from 1"},
      {"1.0", "version is no whole number from 1"},
      {"\"1\"", "version is no whole number from 1"},
      {"null", "version is no whole number from 1"},
      {"99999999999999999999", "version is no whole number from 1"},
  };
  for (const Case& test : cases) {
    EXPECT_EQ(problemOf(decodeHeader(with(kHeader, "/version", test.version))), test.problem);
  }
}

TEST(RecordingFormatTest, ANewerVersionIsToldBeforeWhatItChanged) {
  EXPECT_EQ(problemOf(decodeHeader(R"({"embrix":"recording","version":3})")),
            "version 3 is newer than this program, which reads version 1");
}

TEST(RecordingFormatTest, AnotherFileIsNoRecording) {
  for (const char* line : {"{}", "[]", "null", "1", R"({"embrix":1})", R"({"embrix":"history"})"}) {
    EXPECT_EQ(problemOf(decodeHeader(line)), "is not the start of a recording") << line;
  }
  for (const char* line : {"",
                           "\x7f"
                           "ELF",
                           "{\"embrix\":\"recording\"", "\xff"}) {
    EXPECT_EQ(problemOf(decodeHeader(line)), "is no JSON") << line;
  }
}

TEST(RecordingFormatTest, ValuesOfTheWrongKindAreProblems) {
  struct Case {
    const char* pointer;
    const char* value;
    const char* problem;
  };
  const Case cases[] = {
      {"/tick", "-1", "tick is no whole number from 0 to 18446744073709551615"},
      {"/tick", "18446744073709551616", "tick is no whole number from 0 to 18446744073709551615"},
      {"/uptime", "7.5", "uptime is no list"},
      {"/uptime/0", "\"7.5\"", "uptime[0] is no number"},
      {"/uptime/0", "\"NaN\"", "uptime[0] is no number"},
      {"/uptime/0", "null", "uptime[0] is no number"},
      {"/processes/0", "[]", "processes[0] is no object"},
      {"/processes", "[{},{},{},{},{},{},{},{},{}]", "processes has more than 8 tables"},
      {"/processes/0/gone/0", "2147483648",
       "processes[0].gone[0] is no whole number from -2147483648 to 2147483647"},
      {"/processes/0/added/0/uid", "-1",
       "processes[0].added[0].uid is no whole number from 0 to 4294967295"},
      {"/processes/0/added/0/commandName", "1", "processes[0].added[0].commandName is no text"},
      {"/processes/0/added/0/commandName", R"({"base64":"?"})",
       "processes[0].added[0].commandName is no base64"},
      {"/processes/0/added/0/commandName", R"({"base32":""})",
       "processes[0].added[0].commandName is no text"},
      {"/processes/0/added/0/usage", "[1,2,3,4]",
       "processes[0].added[0].usage is no list of five or six numbers"},
      {"/processes/0/added/0/usage", "{}",
       "processes[0].added[0].usage is no list of five or six numbers"},
      {"/processes/0/added/0/usage/4", "-1",
       "processes[0].added[0].usage is no whole number from 0 to 18446744073709551615"},
      {"/about/0/answer/arguments", "\"a\"", "about[0].answer.arguments is no list"},
      {"/about/0/answer/listening/0/exposed", "1",
       "about[0].answer.listening[0].exposed is neither true nor false"},
      {"/about/0/answer/listening/0/port", "0",
       "about[0].answer.listening[0].port is no whole number from 1 to 65535"},
      {"/about/0/answer/listening/0/port", "65536",
       "about[0].answer.listening[0].port is no whole number from 1 to 65535"},
      {"/energySamples/0", "null", "energySamples[0] is neither true nor false"},
      {"/energyIntervals/0/channels/0/value", "9223372036854775808",
       "energyIntervals[0].channels[0].value is no whole number from -9223372036854775808 to "
       "9223372036854775807"},
      {"/energyIntervals/0/channelSeconds", "2.0", "energyIntervals[0].channelSeconds is no list"},
      {"/batteryRegistry/0", "[]", "batteryRegistry[0] is no object"},
      {"/batteryRegistry/0/Amperage", "18446744073709551615",
       "batteryRegistry[0] is no whole number from -9223372036854775808 to 9223372036854775807"},
      {"/batteryRegistry/0/Updated", R"({"date":"soon"})", "batteryRegistry[0] is no number"},
      {"/batteryRegistry/0/Updated", R"({"other":1})", "batteryRegistry[0] is no text"},
      {"/batteryRegistry/0", R"({"base64:?":1})", "batteryRegistry[0] has a key that is no base64"},
      {"/batteryRegistry/0", R"({"a":1,"base64:YQ==":2})", "batteryRegistry[0] has a key twice"},
      {"/temperatures/0/of", "-1",
       "temperatures[0].of is no whole number from 0 to 18446744073709551615"},
      {"/temperatures/1/of", "0", "temperatures tells of the same thing twice"},
      {"/about", R"([{"of":1,"answer":{}},{"of":1,"answer":{}}])",
       "about tells of the same thing twice"},
      {"/smc/0/of", "\"*\"", "smc[0].of is no base64"},
      {"/smc/0/answer",
       "\"AAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAA"
       "AAAAAAAAAAAAAAAAAAAA\"",
       "smc[0].answer has more than 80 bytes"},
      {"/thermalState/0", "\"hot\"", "thermalState[0] is no thermal state"},
      {"/thermalState/0", "2", "thermalState[0] is no thermal state"},
      {"/powerLog", "[]", "powerLog is no text"},
      {"/fileFacts/0/answer/kind", "\"pipe\"", "fileFacts[0].answer.kind is no kind of file"},
      {"/fileFacts/0/answer/kind", "0", "fileFacts[0].answer.kind is no kind of file"},
      {"/folderLists/0/answer", "{}", "folderLists[0].answer is no list"},
      {"/folderSizes/0/answer", "1.5",
       "folderSizes[0].answer is no whole number from -9223372036854775808 to "
       "9223372036854775807"},
      {"/commandOutputs/0/of", "\"/bin/ps\"", "commandOutputs[0].of is no list"},
  };
  for (const Case& test : cases) {
    EXPECT_EQ(problemOf(decodeTick(with(kTick, test.pointer, test.value))), test.problem)
        << test.pointer << " " << test.value;
  }
}

TEST(RecordingFormatTest, ATickThatIsNoObjectIsAProblem) {
  for (const char* line : {"[]", "1", "null", "\"tick\""}) {
    EXPECT_EQ(problemOf(decodeTick(line)), "is no object") << line;
  }
}

TEST(RecordingFormatTest, EveryCutOfALineIsNoJSON) {
  for (std::size_t length = 0; length < kTick.size(); ++length) {
    EXPECT_EQ(problemOf(decodeTick(kTick.substr(0, length))), "is no JSON") << length;
    EXPECT_FALSE(isJsonLine(kTick.substr(0, length)));
  }
}

}  // namespace
}  // namespace embrix
