#include "entry/options.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace embrix {
namespace {

using Arguments = std::vector<std::string>;
using testing::HasSubstr;
using testing::Not;

TEST(OptionsTest, AnOptionIsAnExactWholeArgumentAnywhere) {
  const struct {
    std::string label;
    Arguments arguments;
    bool expected;
  } rows[] = {
      {"first", {"embrix", "--dump", "x"}, true},
      {"last", {"embrix", "x", "--dump"}, true},
      {"behind an option that takes a value", {"embrix", "--icon", "--dump"}, true},
      {"missing", {"embrix"}, false},
      {"longer", {"embrix", "--dumps"}, false},
      {"shorter", {"embrix", "--dum"}, false},
      {"other case", {"embrix", "--DUMP"}, false},
      {"one hyphen", {"embrix", "-dump"}, false},
      {"with a value glued on", {"embrix", "--dump=yes"}, false},
      {"blanks", {"embrix", " --dump"}, false},
      {"no arguments at all", {}, false},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(hasOption(row.arguments, "--dump"), row.expected) << row.label;
  }
}

TEST(OptionsTest, AValueIsTheNextArgumentAsItStands) {
  const struct {
    std::string label;
    Arguments arguments;
    std::optional<std::string> expected;
  } rows[] = {
      {"path", {"embrix", "--icon", "/tmp/a b.png"}, "/tmp/a b.png"},
      {"another option", {"embrix", "--icon", "--dump"}, "--dump"},
      {"itself", {"embrix", "--icon", "--icon"}, "--icon"},
      {"empty", {"embrix", "--icon", ""}, ""},
      {"the first counts", {"embrix", "--icon", "a", "--icon", "b"}, "a"},
      {"last argument", {"embrix", "--icon"}, std::nullopt},
      {"missing", {"embrix", "a"}, std::nullopt},
      {"no arguments at all", {}, std::nullopt},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(optionValue(row.arguments, "--icon"), row.expected) << row.label;
  }
}

TEST(OptionsTest, HelpTellsEveryOptionOnOneLine) {
  const std::string help = helpText();
  for (const std::string_view option :
       {option::kDump, option::kJSON, option::kCleanup, option::kBackground, option::kWatch,
        option::kRecords, option::kThrottle, option::kRecord, option::kReplay, option::kUITesting,
        option::kLive, option::kSet, option::kHelp, option::kVersion}) {
    EXPECT_THAT(help, HasSubstr("\n  " + std::string(option) + " ")) << option;
  }
  EXPECT_THAT(help, Not(HasSubstr("\n\n\n")));
}

TEST(OptionsTest, HelpIsHonestAboutTheWattsOnLinux) {
  EXPECT_THAT(helpText(), HasSubstr("an estimate"));
}

}  // namespace
}  // namespace embrix
