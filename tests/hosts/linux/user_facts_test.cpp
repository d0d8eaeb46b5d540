#include "hosts/linux/user_facts.h"

#include <gtest/gtest.h>
#include <unistd.h>

namespace embrix {
namespace {

TEST(LinuxUserFactsTest, TheHomeIsTheVariablesThenTheDatabases) {
  struct Case {
    const char* label;
    std::optional<std::string> variable;
    std::optional<std::string> database;
    const char* expected;
  };
  const Case cases[] = {
      {"both", "/home/ada", "/srv/ada", "/home/ada"},
      {"database alone", std::nullopt, "/srv/ada", "/srv/ada"},
      {"an empty variable", "", "/srv/ada", "/srv/ada"},
      {"a relative variable", "ada", "/srv/ada", "/srv/ada"},
      {"a slash at the end", "/home/ada//", std::nullopt, "/home/ada"},
      {"the root folder", "/", std::nullopt, "/"},
      {"neither", std::nullopt, std::nullopt, "/"},
      {"nonsense in both", "", "none", "/"},
  };
  for (const Case& c : cases) {
    const UserFacts facts = userFacts(1000, c.variable, c.database);
    EXPECT_EQ(facts.homeDirectory, c.expected) << c.label;
    EXPECT_EQ(facts.uid, 1000u);
  }
}

TEST(LinuxUserFactsTest, ThisProcessHasAUserAndAHome) {
  const UserFacts facts = linuxUserFacts();
  EXPECT_EQ(facts.uid, ::getuid());
  EXPECT_TRUE(facts.homeDirectory.starts_with('/'));
}

}  // namespace
}  // namespace embrix
