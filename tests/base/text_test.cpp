#include "base/text.h"

#include <random>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace embrix {
namespace {

using namespace std::string_literals;
using testing::ElementsAre;
using testing::IsEmpty;

struct TextCase {
  const char* label;
  std::string input;
  std::string expected;
};

auto labelOf = [](const auto& test) { return test.param.label; };

class RepairedRule : public testing::TestWithParam<TextCase> {};

TEST_P(RepairedRule, GivesValidText) {
  EXPECT_EQ(Text::repaired(GetParam().input), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(
    TextTest, RepairedRule,
    testing::Values(TextCase{"Empty", "", ""}, TextCase{"ASCII", "node", "node"},
                    TextCase{"ValidStays", "Käse 日本 🔥", "Käse 日本 🔥"},
                    TextCase{"NulStays", "a\0b"s, "a\0b"s},
                    TextCase{"LoneContinuation", "a\x80z", "a\uFFFDz"},
                    TextCase{"NeverABeginning", "\xff\xfe", "\uFFFD\uFFFD"},
                    TextCase{"CutShortIsOneReplacement", "a\xe6\x97", "a\uFFFD"},
                    TextCase{"CutShortThenLetter", "\xf0\x9f\x94z", "\uFFFDz"},
                    TextCase{"OverlongSlash", "\xc0\xaf", "\uFFFD\uFFFD"},
                    TextCase{"Surrogate", "\xed\xa0\x80", "\uFFFD\uFFFD\uFFFD"},
                    TextCase{"BeyondUnicode", "\xf4\x90\x80\x80", "\uFFFD\uFFFD\uFFFD\uFFFD"}),
    labelOf);

TEST(TextTest, RepairingTwiceChangesNothingMore) {
  std::mt19937 random(1);
  for (int round = 0; round < 2000; ++round) {
    std::string bytes(random() % 12, '\0');
    for (char& byte : bytes) byte = static_cast<char>(random());
    const std::string once = Text::repaired(bytes);
    EXPECT_EQ(Text::repaired(once), once);
  }
}

class FormatCharacterRule : public testing::TestWithParam<TextCase> {};

TEST_P(FormatCharacterRule, AreRemoved) {
  EXPECT_EQ(Text::withoutFormatCharacters(GetParam().input), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(
    TextTest, FormatCharacterRule,
    testing::Values(TextCase{"Empty", "", ""}, TextCase{"ASCII", "Safari", "Safari"},
                    TextCase{"LeftToRightMark", "\u200EWhatsApp", "WhatsApp"},
                    TextCase{"Override", "a\u202Eb", "ab"},
                    TextCase{"SoftHyphenJoinerAndByteOrderMark", "a\u00AD\u200D\uFEFFb", "ab"},
                    TextCase{"TagBeyondTheBasicPlane", "a\U000E0041b", "ab"},
                    TextCase{"OnlyFormat", "\u200E\u200F", ""},
                    TextCase{"ControlsAndAccentsStay", "a\tb e\u0301", "a\tb e\u0301"},
                    TextCase{"IllFormedIsRepaired", "\u200E\xff", "\uFFFD"}),
    labelOf);

class LowercasedRule : public testing::TestWithParam<TextCase> {};

TEST_P(LowercasedRule, GivesLowerCase) {
  EXPECT_EQ(Text::lowercased(GetParam().input), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(TextTest, LowercasedRule,
                         testing::Values(TextCase{"Empty", "", ""},
                                         TextCase{"ASCII", "Google Chrome @[`{ Z9",
                                                  "google chrome @[`{ z9"},
                                         TextCase{"Accents", "ÄÖÜ ÉCLAIR", "äöü éclair"},
                                         TextCase{"GreekFinalSigma", "ΟΔΟΣ", "οδος"},
                                         TextCase{"DottedCapitalI", "İ", "i\u0307"},
                                         TextCase{"CapitalIIsNotTurkish", "I İ", "i i\u0307"},
                                         TextCase{"IllFormedIsRepaired", "Ä\xff", "ä\uFFFD"}),
                         labelOf);

class TrimmedRule : public testing::TestWithParam<TextCase> {};

TEST_P(TrimmedRule, LosesTheSpaceAtBothEnds) {
  EXPECT_EQ(Text::trimmed(GetParam().input), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(
    TextTest, TrimmedRule,
    testing::Values(TextCase{"Empty", "", ""}, TextCase{"OnlySpace", " \t\r\n ", ""},
                    TextCase{"Nothing", "a b", "a b"}, TextCase{"Both", "  a b\n", "a b"},
                    TextCase{"NoBreakAndWideSpace", "\u00A0\u3000a\u2003", "a"},
                    TextCase{"IllFormedStays", " \xff ", "\xff"}),
    labelOf);

TEST(TextTest, SplitDropsEmptyPieces) {
  EXPECT_THAT(Text::split("com.example.App", '.'), ElementsAre("com", "example", "App"));
  EXPECT_THAT(Text::split("..a..b..", '.'), ElementsAre("a", "b"));
  EXPECT_THAT(Text::split("/usr/bin/", '/'), ElementsAre("usr", "bin"));
  EXPECT_THAT(Text::split("plain", '.'), ElementsAre("plain"));
  EXPECT_THAT(Text::split("...", '.'), IsEmpty());
  EXPECT_THAT(Text::split("", '.'), IsEmpty());
}

TEST(TextTest, LastPieceIsTheLastThatIsNotEmpty) {
  EXPECT_EQ(Text::lastPiece("/usr/bin/env", '/'), "env");
  EXPECT_EQ(Text::lastPiece("/Applications/A.app//", '/'), "A.app");
  EXPECT_EQ(Text::lastPiece("plain", '/'), "plain");
  EXPECT_EQ(Text::lastPiece("///", '/'), "");
  EXPECT_EQ(Text::lastPiece("", '/'), "");
}

TEST(TextTest, LastPieceAgreesWithSplit) {
  std::mt19937 random(2);
  for (int round = 0; round < 2000; ++round) {
    std::string text(random() % 8, '/');
    for (char& c : text) c = "/ab"[random() % 3];
    const auto pieces = Text::split(text, '/');
    EXPECT_EQ(Text::lastPiece(text, '/'), pieces.empty() ? "" : pieces.back()) << text;
  }
}

TEST(TextTest, CharactersAreCountedAsAPersonWould) {
  EXPECT_EQ(Text::characterCount(""), 0u);
  EXPECT_EQ(Text::characterCount("node"), 4u);
  EXPECT_EQ(Text::characterCount("日本"), 2u);
  EXPECT_EQ(Text::characterCount("e\u0301a"), 2u);
  EXPECT_EQ(Text::characterCount("👨\u200D👩\u200D👧"), 1u);
  EXPECT_EQ(Text::characterCount("\xff\xfe"), 2u);
}

TEST(TextTest, FirstCharactersAreDroppedWhole) {
  EXPECT_EQ(Text::withoutFirstCharacters("Slack Helper", 5), " Helper");
  EXPECT_EQ(Text::withoutFirstCharacters("日本 Helper", 2), " Helper");
  EXPECT_EQ(Text::withoutFirstCharacters("e\u0301a", 1), "a");
  EXPECT_EQ(Text::withoutFirstCharacters("ab", 0), "ab");
  EXPECT_EQ(Text::withoutFirstCharacters("ab", 7), "");
  EXPECT_EQ(Text::withoutFirstCharacters("日本", 7), "");
}

class TerminalRule : public testing::TestWithParam<TextCase> {};

TEST_P(TerminalRule, EscapesWhatActsOnATerminal) {
  EXPECT_EQ(Text::escapeForTerminal(GetParam().input), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(
    TextTest, TerminalRule,
    testing::Values(TextCase{"Empty", "", ""},
                    TextCase{"PrintableStays", "Käse 日本 🔥 \\", "Käse 日本 🔥 \\"},
                    TextCase{"EscapeSequence", "\x1b[31mred", "\\x1b[31mred"},
                    TextCase{"LineBreaksAndTabs", "a\r\nb\tc", "a\\x0d\\x0ab\\x09c"},
                    TextCase{"NulAndDelete", "\0\x7f"s, "\\x00\\x7f"},
                    TextCase{"SecondControlSet", "\u009b31m", "\\u009b31m"},
                    TextCase{"DirectionOverride", "a\u202Egpj.exe", "a\\u202egpj.exe"},
                    TextCase{"LineSeparators", "\u2028\u2029", "\\u2028\\u2029"},
                    TextCase{"TagBeyondTheBasicPlane", "\U000E0001", "\\U000e0001"},
                    TextCase{"IllFormedBytes", "a\xff\xe6\x97z", "a\\xff\\xe6\\x97z"},
                    TextCase{"RawSecondControlByte", "\x9b", "\\x9b"}),
    labelOf);

TEST(TextTest, EscapedTextHoldsNoControlByte) {
  std::mt19937 random(3);
  for (int round = 0; round < 2000; ++round) {
    std::string bytes(random() % 12, '\0');
    for (char& byte : bytes) byte = static_cast<char>(random());
    const std::string shown = Text::escapeForTerminal(bytes);
    EXPECT_EQ(Text::repaired(shown), shown);
    for (const char c : shown) {
      EXPECT_FALSE(static_cast<unsigned char>(c) < 0x20 || c == 0x7f) << bytes;
    }
  }
}

struct EqualityCase {
  std::string label;
  std::string a;
  std::string b;
  bool expected = false;
};

class EqualsIgnoringCaseRule : public testing::TestWithParam<EqualityCase> {};

TEST_P(EqualsIgnoringCaseRule, ComparesWithoutRegardToCase) {
  EXPECT_EQ(Text::equalsIgnoringCase(GetParam().a, GetParam().b), GetParam().expected);
  EXPECT_EQ(Text::equalsIgnoringCase(GetParam().b, GetParam().a), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(
    TextTest, EqualsIgnoringCaseRule,
    testing::Values(EqualityCase{"Equal", "Slack", "Slack", true},
                    EqualityCase{"AnotherCase", "Slack", "sLACK", true},
                    EqualityCase{"AnotherWord", "Slack", "Slick", false},
                    EqualityCase{"ABeginning", "Slack", "Slac", false},
                    EqualityCase{"BothEmpty", "", "", true},
                    EqualityCase{"BesideTheLetters", "[", "{", false},
                    EqualityCase{"Accents", "ÉTUDE", "étude", true},
                    EqualityCase{"AccentsInTwoPieces", "E\u0301TUDE", "étude", true},
                    EqualityCase{"WithoutAccent", "Etude", "étude", false},
                    EqualityCase{"FinalSigma", "ΣΊΣΥΦΟΣ", "σίσυφος", true},
                    EqualityCase{"NoTurkishRules", "TITLE", "tıtle", false},
                    EqualityCase{"IllFormed", "A\xff", "a\xff", true},
                    EqualityCase{"IllFormedAndRepaired", "A\xff", "a\uFFFD", true}),
    [](const auto& test) { return test.param.label; });

}  // namespace
}  // namespace embrix
