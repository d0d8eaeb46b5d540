#include "hosts/linux/desktop_command.h"

#include <gtest/gtest.h>

#include <string>

namespace embrix {
namespace {

TEST(DesktopCommandTest, ACommandLineHasItsProgramOrNone) {
  struct Case {
    const char* exec;
    std::optional<DesktopCommand> expected;
  };
  const Case cases[] = {
      {"firefox %u", DesktopCommand{"firefox", 0, ""}},
      {"/usr/bin/code --new-window %F", DesktopCommand{"/usr/bin/code", 1, ""}},
      {"\"/opt/My App/app\" %f", DesktopCommand{"/opt/My App/app", 0, ""}},
      {"/opt/a\\ b/app", DesktopCommand{"/opt/a b/app", 0, ""}},
      {"app %% %k", DesktopCommand{"app", 1, ""}},
      {"env A=1 B=2 app --x", DesktopCommand{"app", 1, ""}},
      {"/usr/bin/env -i -u HOME=1 app", DesktopCommand{"app", 0, ""}},
      {"env BAMF_DESKTOP_FILE_HINT=/var/lib/x.desktop /snap/bin/firefox %u",
       DesktopCommand{"/snap/bin/firefox", 0, ""}},
      {"sh -c 'exec app --flag'", DesktopCommand{"app", 1, ""}},
      {"bash -c \"A=1 /opt/x/app\"", DesktopCommand{"/opt/x/app", 0, ""}},
      {"nice -n 10 app", DesktopCommand{"app", 0, ""}},
      {"pkexec /usr/sbin/gparted", DesktopCommand{"/usr/sbin/gparted", 0, ""}},
      {"prime-run env A=1 sh -c app", DesktopCommand{"app", 0, ""}},
      {"/usr/bin/flatpak run --branch=stable --command=firefox org.mozilla.firefox @@u %u @@",
       DesktopCommand{"", 0, "org.mozilla.firefox"}},
      {"org.mozilla.firefox", DesktopCommand{"org.mozilla.firefox", 0, ""}},
      {"flatpak run --branch=stable", std::nullopt},
      {"flatpak update", std::nullopt},
      {"sh -c 'cd /opt && ./app'", std::nullopt},
      {"sh -c '$HOME/app'", std::nullopt},
      {"sh -c 'app; other'", std::nullopt},
      {"sh -c ''", std::nullopt},
      {"sh /opt/x/start.sh", std::nullopt},
      {"bash", std::nullopt},
      {"python3 /usr/share/app/main.py", std::nullopt},
      {"/usr/bin/python3.11", std::nullopt},
      {"env PYTHONPATH=/x python3 -m app", std::nullopt},
      {"java -jar /opt/app.jar", std::nullopt},
      {"electron28 /usr/lib/app", std::nullopt},
      {"xdg-open https://example.org", std::nullopt},
      {"env", std::nullopt},
      {"env A=1", std::nullopt},
      {"nice -n 10", std::nullopt},
      {"sh -c 'sh -c app'", DesktopCommand{"app", 0, ""}},
      {"\"open quote", std::nullopt},
      {"", std::nullopt},
      {"   ", std::nullopt},
      {"\"\"", std::nullopt},
      {"/opt/folder/", std::nullopt},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(parseExec(c.exec), c.expected) << c.exec;
  }
}

TEST(DesktopCommandTest, EndlessWrappersAreGivenUp) {
  std::string exec;
  for (int i = 0; i < 100'000; ++i) exec += "env ";
  EXPECT_EQ(parseExec(exec + "app"), std::nullopt);
}

TEST(DesktopCommandTest, InterpretersAreKnownByTheirNameWithoutItsVersion) {
  for (const char* name :
       {"python3", "python3.11", "/usr/bin/node", "nodejs", "ruby3.1", "electron28", "java", "bash",
        "sh", "perl5.36", "lua5.4", "wine-9.0", "busybox", "Rscript"}) {
    EXPECT_TRUE(isInterpreter(name)) << name;
  }
  for (const char* name :
       {"firefox", "pythonista", "shotwell", "javaws-thing", "code", "2048", "", "/"}) {
    EXPECT_FALSE(isInterpreter(name)) << name;
  }
}

}  // namespace
}  // namespace embrix
