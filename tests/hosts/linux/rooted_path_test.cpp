#include "hosts/linux/rooted_path.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "captured_tree.h"
#include "hosts/linux/program_folders.h"

namespace embrix {
namespace {

class RootedPathTest : public testing::Test {
 protected:
  void program(const std::string& path, const std::string& content =
                                            "\x7f"
                                            "ELF") {
    tree.write(path, content);
    std::filesystem::permissions(tree.root() + "/" + path, std::filesystem::perms::owner_all);
  }

  CapturedTree tree;
};

TEST_F(RootedPathTest, LinksAreFollowedInsideTheRoot) {
  tree.write("usr/lib/firefox/firefox", "x");
  tree.link("usr/bin/firefox", "../lib/firefox/firefox");
  tree.link("bin", "usr/bin");
  tree.link("usr/bin/browser", "/etc/alternatives/browser");
  tree.link("etc/alternatives/browser", "/usr/bin/firefox");
  tree.link("usr/bin/loop", "loop");
  tree.link("usr/bin/broken", "/nowhere");
  tree.link("usr/bin/escape", "../../../../../../usr/bin/firefox");
  struct Case {
    const char* path;
    std::optional<std::string> expected;
  };
  const Case cases[] = {
      {"/usr/lib/firefox/firefox", "/usr/lib/firefox/firefox"},
      {"/usr/bin/firefox", "/usr/lib/firefox/firefox"},
      {"/bin/firefox", "/usr/lib/firefox/firefox"},
      {"/usr/bin/browser", "/usr/lib/firefox/firefox"},
      {"//usr/./bin//../bin/firefox", "/usr/lib/firefox/firefox"},
      {"/usr/bin/escape", "/usr/lib/firefox/firefox"},
      {"/", "/"},
      {"/../..", "/"},
      {"/usr/bin/loop", std::nullopt},
      {"/usr/bin/broken", std::nullopt},
      {"/usr/bin/missing", std::nullopt},
      {"/usr/lib/firefox/firefox/deeper", std::nullopt},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(resolvedPath(tree.root(), c.path), c.expected) << c.path;
  }
}

TEST_F(RootedPathTest, ProgramsAreFilesThatMayRun) {
  program("usr/bin/app");
  tree.write("usr/bin/text", "x");
  std::filesystem::permissions(tree.root() + "/usr/bin/text", std::filesystem::perms::owner_read);
  EXPECT_TRUE(isExecutable(tree.root(), "/usr/bin/app"));
  EXPECT_FALSE(isExecutable(tree.root(), "/usr/bin/text"));
  EXPECT_FALSE(isExecutable(tree.root(), "/usr/bin"));
  EXPECT_FALSE(isExecutable(tree.root(), "/usr/bin/missing"));
}

TEST_F(RootedPathTest, ScriptsBeginWithTheirMark) {
  program("a", "#!/bin/sh\n");
  program("b", "#");
  program("c", "");
  EXPECT_TRUE(isScript(tree.root(), "/a"));
  EXPECT_FALSE(isScript(tree.root(), "/b"));
  EXPECT_FALSE(isScript(tree.root(), "/c"));
  EXPECT_FALSE(isScript(tree.root(), "/missing"));
}

TEST(OwnFolderTest, AFolderIsAnApplicationsOwnOrShared) {
  struct Case {
    const char* program;
    std::optional<std::string> expected;
  };
  const Case cases[] = {
      {"/opt/google/chrome/google-chrome", "/opt/google/chrome"},
      {"/usr/lib/firefox/firefox", "/usr/lib/firefox"},
      {"/usr/lib/x86_64-linux-gnu/thunar/thunar", "/usr/lib/x86_64-linux-gnu/thunar"},
      {"/usr/share/code/bin/code", "/usr/share/code"},
      {"/opt/idea/2024.1/bin/idea", "/opt/idea/2024.1"},
      {"/home/ada/.local/share/JetBrains/apps/idea/bin/idea",
       "/home/ada/.local/share/JetBrains/apps/idea"},
      {"/usr/bin/gedit", std::nullopt},
      {"/bin/gedit", std::nullopt},
      {"/usr/local/bin/tool", std::nullopt},
      {"/opt/tool", std::nullopt},
      {"/opt/bin/tool", std::nullopt},
      {"/usr/lib/tool", std::nullopt},
      {"/usr/lib/x86_64-linux-gnu/tool", std::nullopt},
      {"/usr/lib/x86_64-linux-gnu/qt5/bin/designer", std::nullopt},
      {"/usr/lib/qt6/bin/designer", std::nullopt},
      {"/usr/lib/jvm/java-17/bin/jconsole", std::nullopt},
      {"/usr/lib/llvm-14/bin/clangd", std::nullopt},
      {"/usr/libexec/gnome-terminal-server", std::nullopt},
      {"/home/ada/.local/bin/tool", std::nullopt},
      {"/home/ada/Downloads/tool", std::nullopt},
      {"/home/eve/.local/share/x/tool", std::nullopt},
      {"tool", std::nullopt},
      {"", std::nullopt},
      {"/", std::nullopt},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(ownFolder(c.program, "/home/ada"), c.expected) << c.program;
  }
}

TEST_F(RootedPathTest, FoldersThatCarryAProgramsNameHoldAProgramOfIt) {
  program("usr/lib/firefox/firefox");
  program("usr/lib/x86_64-linux-gnu/firefox/firefox-bin");
  program("usr/lib64/firefox/other");
  program("opt/firefox/firefox", "#!/bin/sh\n");
  EXPECT_EQ(foldersNamedFor(tree.root(), "firefox"),
            (std::vector<std::string>{"/usr/lib/firefox", "/usr/lib/x86_64-linux-gnu/firefox"}));
  EXPECT_TRUE(foldersNamedFor(tree.root(), "chrome").empty());
  program("usr/lib/systemd/systemd");
  EXPECT_TRUE(foldersNamedFor(tree.root(), "systemd").empty());
}

}  // namespace
}  // namespace embrix
