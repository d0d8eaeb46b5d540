#include "darwin/property_list.h"

#include <gtest/gtest.h>
#include <plist/plist.h>

#include <random>
#include <string>

#include "fakes/captures.h"

namespace embrix {
namespace {

using namespace std::string_literals;

std::string xml(std::string_view contents) {
  return R"(<?xml version="1.0" encoding="UTF-8"?>
<!DOCTYPE plist PUBLIC "-//Apple//DTD PLIST 1.0//EN" "http://www.apple.com/DTDs/PropertyList-1.0.dtd">
<plist version="1.0">
)" + std::string(contents) +
         "\n</plist>\n";
}

// The binary form of an XML list, by the library's own hand.
std::string binary(const std::string& xmlList) {
  plist_t tree = nullptr;
  plist_from_xml(xmlList.data(), static_cast<std::uint32_t>(xmlList.size()), &tree);
  char* bytes = nullptr;
  std::uint32_t size = 0;
  plist_to_bin(tree, &bytes, &size);
  std::string result(bytes, size);
  std::free(bytes);
  plist_free(tree);
  return result;
}

const std::string kEveryKind = xml(R"(<dict>
  <key>name</key><string>iPhone 15 Pro — “Ada’s”</string>
  <key>state</key><integer>3</integer>
  <key>below</key><integer>-73</integer>
  <key>most</key><integer>9223372036854775807</integer>
  <key>ratio</key><real>0.5</real>
  <key>isDeleted</key><false/>
  <key>isEphemeral</key><true/>
  <key>lastBootedAt</key><date>2025-06-15T15:06:40Z</date>
  <key>blob</key><data>AAEC</data>
  <key>empty</key><string></string>
  <key>list</key><array><integer>1</integer><string>two</string><array/></array>
  <key>nested</key><dict><key>a</key><dict/></dict>
</dict>)");

PropertyMap everyKind() {
  return {{"name", "iPhone 15 Pro — “Ada’s”"},
          {"state", 3},
          {"below", -73},
          {"most", std::numeric_limits<std::int64_t>::max()},
          {"ratio", 0.5},
          {"isDeleted", false},
          {"isEphemeral", true},
          {"lastBootedAt", PropertyDate{1'750'000'000}},
          {"blob", Property()},
          {"empty", ""},
          {"list", PropertyList{1, "two", PropertyList{}}},
          {"nested", PropertyMap{{"a", PropertyMap{}}}}};
}

TEST(PropertyListTest, XmlOfEveryKind) {
  EXPECT_EQ(decodePropertyList(kEveryKind), Property(everyKind()));
}

TEST(PropertyListTest, BinaryOfEveryKind) {
  EXPECT_EQ(decodePropertyList(binary(kEveryKind)), Property(everyKind()));
}

TEST(PropertyListTest, TheRootCanBeAnyValue) {
  EXPECT_EQ(decodePropertyList(xml("<string>alone</string>")), Property("alone"));
  EXPECT_EQ(decodePropertyList(xml("<array><true/></array>")), Property(PropertyList{true}));
}

TEST(PropertyListTest, NumbersAboveTheSignedRangeKeepTheirBits) {
  const std::string list = xml("<integer>18446744073709551543</integer>");
  EXPECT_EQ(decodePropertyList(list), Property(-73));
  EXPECT_EQ(decodePropertyList(binary(list)), Property(-73));
}

TEST(PropertyListTest, EntitiesAndCommentsAreUnderstood) {
  EXPECT_EQ(decodePropertyList(xml("<!-- <array> --><dict><key>a&amp;b</key>"
                                   "<string>&lt;x&gt; <![CDATA[</dict>]]></string></dict>")),
            Property(PropertyMap{{"a&b", "<x> </dict>"}}));
}

TEST(PropertyListTest, WhatIsNoPropertyListIsAbsent) {
  for (const std::string& bytes :
       {""s, "b"s, "bplist00"s, "bplist15 and more than forty bytes of another version"s, "{}"s,
        R"({"name": "json"})"s, "{ name = openstep; }"s, "plain text, long enough to be read"s,
        std::string(64, '\0'), std::string(64, '<'), "<plist>"s, "<html><body/></html>"s}) {
    EXPECT_EQ(decodePropertyList(bytes), std::nullopt) << bytes;
  }
}

// The library's parsers recurse, and each of these ends the process when it reaches them.
TEST(PropertyListTest, DeepNestingInXmlIsRefused) {
  for (const std::string& opening :
       {"<array>"s, "<dict><key>a</key>"s, "<array a=\"</array>\">"s, "<!--</array>--><array>"s}) {
    std::string contents;
    for (int i = 0; i < 200'000; ++i) contents += opening;
    EXPECT_EQ(decodePropertyList(xml(contents)), std::nullopt) << opening;
  }
}

// An array of one byte for each reference, as a binary list in which every value is an array.
std::string binaryOfArrays(const std::vector<std::vector<std::uint8_t>>& arrays) {
  std::string list = "bplist00";
  std::string offsets;
  for (const auto& references : arrays) {
    offsets += static_cast<char>(list.size() >> 8);
    offsets += static_cast<char>(list.size());
    list += static_cast<char>(0xa0 | references.size());
    list.append(references.begin(), references.end());
  }
  const std::size_t table = list.size();
  list += offsets;
  std::string trailer(32, '\0');
  trailer[6] = 2;
  trailer[7] = 1;
  trailer[15] = static_cast<char>(arrays.size());
  trailer[30] = static_cast<char>(table >> 8);
  trailer[31] = static_cast<char>(table);
  return list + trailer;
}

TEST(PropertyListTest, BinaryArraysCanShareAValue) {
  EXPECT_EQ(decodePropertyList(binaryOfArrays({{1, 1}, {}})),
            Property(PropertyList{PropertyList{}, PropertyList{}}));
}

TEST(PropertyListTest, ABinaryListInsideItselfIsRefused) {
  EXPECT_EQ(decodePropertyList(binaryOfArrays({{0}})), std::nullopt);
  EXPECT_EQ(decodePropertyList(binaryOfArrays({{1}, {2}, {0}})), std::nullopt);
}

// Sixty arrays, each with the next twice: 2^60 values in 300 bytes.
TEST(PropertyListTest, ABinaryListThatUnfoldsWithoutEndIsRefused) {
  std::vector<std::vector<std::uint8_t>> arrays;
  for (std::uint8_t i = 1; i < 60; ++i) arrays.push_back({i, i});
  arrays.emplace_back();
  EXPECT_EQ(decodePropertyList(binaryOfArrays(arrays)), std::nullopt);
}

TEST(PropertyListTest, DeepNestingInABinaryListIsRefused) {
  std::vector<std::vector<std::uint8_t>> arrays;
  for (std::uint8_t i = 1; i < 200; ++i) arrays.push_back({i});
  arrays.emplace_back();
  EXPECT_EQ(decodePropertyList(binaryOfArrays(arrays)), std::nullopt);
  EXPECT_NE(decodePropertyList(binaryOfArrays({{1}, {2}, {3}, {}})), std::nullopt);
}

// A dictionary of one key, the bytes of which are given with their marker.
std::string binaryWithKey(const std::string& key) {
  std::string list = "bplist00\xd1\x01\x02" + key + "\x09";
  const std::size_t table = list.size();
  list += "\x08\x0b"s + static_cast<char>(table - 1);
  std::string trailer(32, '\0');
  trailer[6] = 1;
  trailer[7] = 1;
  trailer[15] = 3;
  trailer[31] = static_cast<char>(table);
  return list + trailer;
}

TEST(PropertyListTest, ABinaryKeyIsATextWithoutNul) {
  EXPECT_EQ(decodePropertyList(binaryWithKey("\x52"
                                             "ab")),
            Property(PropertyMap{{"ab", true}}));
  EXPECT_EQ(decodePropertyList(binaryWithKey("\x62\0a\x20\xac"s)),
            Property(PropertyMap{{"a€", true}}));
  EXPECT_EQ(decodePropertyList(binaryWithKey("\x52"
                                             "a\0"s)),
            std::nullopt);
  EXPECT_EQ(decodePropertyList(binaryWithKey("\x62\0a\0\0"s)), std::nullopt);
  EXPECT_EQ(decodePropertyList(binaryWithKey("\x10\x07")), std::nullopt);
}

TEST(PropertyListTest, AListBeyondTheSizeLimitIsRefused) {
  const std::string four(std::size_t{4} << 20, 'a');
  EXPECT_EQ(decodePropertyList(xml("<string>" + four + "</string>")), std::nullopt);
  EXPECT_NE(decodePropertyList(xml("<string>" + four.substr(1000) + "</string>")), std::nullopt);
}

TEST(PropertyListTest, NoTruncationCrashes) {
  for (const std::string& whole : {kEveryKind, binary(kEveryKind)}) {
    for (std::size_t size = 0; size < whole.size(); ++size) {
      const auto list = decodePropertyList(whole.substr(0, size));
      // A list that lost nothing but its closing tag may still be read, and then as it was.
      if (!list) continue;
      EXPECT_EQ(list, Property(everyKind())) << size;
    }
  }
}

TEST(PropertyListTest, NoChangedByteCrashes) {
  std::mt19937 generator(7);
  for (const std::string& whole : {kEveryKind, binary(kEveryKind)}) {
    for (std::size_t place = 0; place < whole.size(); ++place) {
      for (const int change : {0x01, 0x80, 0xff, static_cast<int>(generator() & 0xff)}) {
        std::string bytes = whole;
        bytes[place] = static_cast<char>(bytes[place] ^ change);
        decodePropertyList(bytes);
      }
    }
  }
}

// A simulator's file as CoreSimulator keeps it.
TEST(PropertyListTest, ASimulatorsFile) {
  EXPECT_EQ(decodePropertyList(
                captureOr("07_xcode/coresimulator_device_dates_only.plist",
                          xml("<dict><key>lastUsedAt</key><date>2026-07-16T14:20:05Z</date>"
                              "<key>lastBootedAt</key><date>2026-08-03T21:53:24Z</date></dict>"))),
            Property(PropertyMap{{"lastUsedAt", PropertyDate{1'784'211'605}},
                                 {"lastBootedAt", PropertyDate{1'785'794'004}}}));
}

TEST(PropertyListTest, ABuildFoldersFile) {
  EXPECT_EQ(decodePropertyList(
                captureOr("07_xcode/deriveddata_info.plist",
                          xml("<dict><key>LastAccessedDate</key><date>2026-09-06T15:39:21Z</date>"
                              "<key>WorkspacePath</key><string>/Users/dev/src/App/App.xcworkspace</"
                              "string></dict>"))),
            Property(PropertyMap{{"LastAccessedDate", PropertyDate{1'788'709'161}},
                                 {"WorkspacePath", "/Users/dev/src/App/App.xcworkspace"}}));
}

TEST(PropertyListTest, ABuildFoldersFileWithoutAPath) {
  EXPECT_EQ(decodePropertyList(captureOr(
                "07_xcode/deriveddata_info_no_workspacepath.plist",
                xml("<dict><key>LastAccessedDate</key><date>2026-09-06T15:39:21Z</date></dict>"))),
            Property(PropertyMap{{"LastAccessedDate", PropertyDate{1'788'709'161}}}));
}

}  // namespace
}  // namespace embrix
