#include "hosts/linux/application_source.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "captured_tree.h"

namespace embrix {
namespace {

class LinuxApplicationSourceTest : public testing::Test {
 protected:
  void program(const std::string& path, const std::string& content =
                                            "\x7f"
                                            "ELF") {
    tree.write(path, content);
    std::filesystem::permissions(tree.root() + "/" + path, std::filesystem::perms::owner_all);
  }
  void script(const std::string& path) { program(path, "#!/bin/sh\nexec something \"$@\"\n"); }
  void entry(const std::string& file, const std::string& name, const std::string& exec,
             const std::string& more = "") {
    tree.write(file,
               "[Desktop Entry]\nType=Application\nName=" + name + "\nExec=" + exec + "\n" + more);
  }
  void system(const std::string& id, const std::string& name, const std::string& exec,
              const std::string& more = "") {
    entry("usr/share/applications/" + id + ".desktop", name, exec, more);
  }
  LinuxApplicationSource source() { return LinuxApplicationSource(tree.root(), environment); }
  // The identifier of the application behind the executable, or empty.
  std::string idOf(const std::string& executable) {
    const auto application = source().byExecutable(executable);
    return application ? application->identifier : "";
  }

  CapturedTree tree;
  DesktopEnvironment environment{
      .home = "/home/ada", .dataHome = "", .dataFolders = "", .path = ""};
};

TEST_F(LinuxApplicationSourceTest, AnEntrysProgramIsItsApplication) {
  program("usr/bin/gedit");
  system("org.gnome.gedit", "Text Editor", "gedit %U");
  EXPECT_EQ(source().byExecutable("/usr/bin/gedit"),
            (InstalledApplication{"Text Editor", "org.gnome.gedit",
                                  "/usr/share/applications/org.gnome.gedit.desktop"}));
  EXPECT_EQ(source().pathForIdentifier("org.gnome.gedit"),
            "/usr/share/applications/org.gnome.gedit.desktop");
  EXPECT_EQ(source().pathForIdentifier("org.gnome"), std::nullopt);
  EXPECT_EQ(source().pathForIdentifier(""), std::nullopt);
  EXPECT_EQ(source().bundle("/usr/share/applications/org.gnome.gedit.desktop"), std::nullopt);
}

TEST_F(LinuxApplicationSourceTest, ProgramsOfNoApplicationAreAbsent) {
  program("usr/bin/gedit");
  system("org.gnome.gedit", "Text Editor", "gedit %U");
  for (const char* path : {"/usr/bin/grep", "/usr/bin", "/", "", "gedit", "/usr/bin/gedit/x",
                           "/usr/bin/gedit-helper", "\xff"}) {
    EXPECT_EQ(source().byExecutable(path), std::nullopt) << path;
  }
}

TEST_F(LinuxApplicationSourceTest, LinksAndWrappersLeadToTheRealProgram) {
  struct Case {
    const char* label;
    const char* exec;
  };
  const Case cases[] = {
      {"a link", "firefox %u"},
      {"a path to a link", "/usr/bin/firefox"},
      {"a link to a folder on the way", "/bin/firefox"},
      {"env", "env MOZ_ENABLE_WAYLAND=1 firefox %u"},
      {"a shell", "sh -c \"exec firefox\""},
  };
  program("usr/lib/firefox/firefox");
  tree.link("usr/bin/firefox", "../lib/firefox/firefox");
  tree.link("bin", "usr/bin");
  for (const Case& c : cases) {
    system("firefox", "Firefox", c.exec);
    EXPECT_EQ(idOf("/usr/lib/firefox/firefox"), "firefox") << c.label;
  }
}

TEST_F(LinuxApplicationSourceTest, ProgramsInItsOwnFolderAreTheApplications) {
  script("opt/google/chrome/google-chrome");
  program("opt/google/chrome/chrome");
  tree.link("usr/bin/google-chrome-stable", "/opt/google/chrome/google-chrome");
  system("google-chrome", "Google Chrome", "/usr/bin/google-chrome-stable %U");
  EXPECT_EQ(idOf("/opt/google/chrome/chrome"), "google-chrome");
  EXPECT_EQ(idOf("/opt/google/chrome/helpers/deep/crashpad"), "google-chrome");
  EXPECT_EQ(idOf("/opt/google/earth/earth"), "");
  EXPECT_EQ(idOf("/opt/google"), "");
}

TEST_F(LinuxApplicationSourceTest, AStartingScriptLeadsToTheFolderOfItsName) {
  script("usr/bin/firefox");
  program("usr/lib/firefox/firefox");
  system("firefox", "Firefox", "firefox %u");
  EXPECT_EQ(idOf("/usr/lib/firefox/firefox"), "firefox");
  EXPECT_EQ(idOf("/usr/lib/firefox/plugin-container"), "firefox");
  EXPECT_EQ(idOf("/usr/bin/firefox"), "");  // a script is never what runs
}

TEST_F(LinuxApplicationSourceTest, InterpretersAreNobodysByExecAlone) {
  program("usr/bin/python3.11");
  tree.link("usr/bin/python3", "python3.11");
  program("usr/lib/electron28/electron");
  tree.link("usr/bin/app", "/usr/lib/electron28/electron");
  program("usr/bin/bash");
  program("usr/lib/jvm/java-17/bin/java");
  tree.link("usr/bin/java", "/usr/lib/jvm/java-17/bin/java");
  system("python3.11", "Python", "/usr/bin/python3.11");
  system("tool", "Tool", "python3 /usr/share/tool/main.py");
  system("app", "App", "app");
  system("shell", "Shell", "bash -l");
  system("jar", "Jar", "java -jar /usr/share/jar/jar.jar");
  for (const char* path : {"/usr/bin/python3.11", "/usr/bin/bash", "/usr/lib/electron28/electron",
                           "/usr/lib/jvm/java-17/bin/java"}) {
    EXPECT_EQ(idOf(path), "") << path;
  }
}

TEST_F(LinuxApplicationSourceTest, AnInterpreterInTheApplicationsFolderIsItsOwn) {
  script("opt/idea/bin/idea.sh");
  program("opt/idea/jbr/bin/java");
  system("jetbrains-idea", "IDEA", "/opt/idea/bin/idea.sh %f");
  EXPECT_EQ(idOf("/opt/idea/jbr/bin/java"), "jetbrains-idea");
}

TEST_F(LinuxApplicationSourceTest, TheBarestEntryStandsForASharedProgram) {
  script("usr/lib/libreoffice/program/soffice");
  program("usr/lib/libreoffice/program/soffice.bin");
  tree.link("usr/bin/libreoffice", "/usr/lib/libreoffice/program/soffice");
  system("libreoffice-calc", "LibreOffice Calc", "libreoffice --calc %U");
  system("libreoffice-math", "LibreOffice Math", "libreoffice --math %U");
  system("libreoffice-startcenter", "LibreOffice", "libreoffice %U");
  system("libreoffice-xslt", "Filters", "libreoffice", "NoDisplay=true\n");
  EXPECT_EQ(idOf("/usr/lib/libreoffice/program/soffice.bin"), "libreoffice-startcenter");
}

TEST_F(LinuxApplicationSourceTest, AFolderOfSeveralApplicationsIsNobodys) {
  program("opt/suite/one");
  program("opt/suite/two");
  system("one", "One", "/opt/suite/one");
  system("two", "Two", "/opt/suite/two");
  EXPECT_EQ(idOf("/opt/suite/one"), "one");
  EXPECT_EQ(idOf("/opt/suite/two"), "two");
  EXPECT_EQ(idOf("/opt/suite/helper"), "");
}

TEST_F(LinuxApplicationSourceTest, EntriesThatAreNotShownStillNameTheirProgram) {
  program("usr/bin/gnome-shell");
  system("org.gnome.Shell", "GNOME Shell", "gnome-shell", "NoDisplay=true\n");
  EXPECT_EQ(idOf("/usr/bin/gnome-shell"), "org.gnome.Shell");
}

TEST_F(LinuxApplicationSourceTest, WhatTheUserDeletedIsGone) {
  program("usr/bin/gedit");
  system("gedit", "Text Editor", "gedit");
  tree.write("home/ada/.local/share/applications/gedit.desktop", "[Desktop Entry]\nHidden=true\n");
  EXPECT_EQ(idOf("/usr/bin/gedit"), "");
  EXPECT_EQ(source().pathForIdentifier("gedit"), std::nullopt);
}

TEST_F(LinuxApplicationSourceTest, TryExecNamesAProgramThatMustBeThere) {
  program("usr/bin/gedit");
  system("a", "A", "gedit", "TryExec=missing\n");
  EXPECT_EQ(idOf("/usr/bin/gedit"), "");
  system("a", "A", "gedit", "TryExec=gedit\n");
  EXPECT_EQ(idOf("/usr/bin/gedit"), "a");
}

TEST_F(LinuxApplicationSourceTest, TheFirstFolderWithAnIdWins) {
  program("usr/bin/gedit");
  environment.dataFolders = "/opt/desktop/share/:/usr/share:relative";
  system("gedit", "System", "gedit");
  EXPECT_EQ(source().byExecutable("/usr/bin/gedit")->name, "System");
  entry("opt/desktop/share/applications/gedit.desktop", "Desktop", "gedit");
  EXPECT_EQ(source().byExecutable("/usr/bin/gedit")->name, "Desktop");
  entry("home/ada/.local/share/applications/gedit.desktop", "User", "gedit");
  EXPECT_EQ(source().byExecutable("/usr/bin/gedit")->name, "User");
  environment.dataHome = "/data";
  entry("data/applications/gedit.desktop", "Data", "gedit");
  EXPECT_EQ(source().byExecutable("/usr/bin/gedit")->name, "Data");
}

TEST_F(LinuxApplicationSourceTest, FoldersBelowCountIntoTheId) {
  program("usr/bin/kate");
  entry("usr/share/applications/kde/kate.desktop", "Kate", "kate");
  EXPECT_EQ(idOf("/usr/bin/kate"), "kde-kate");
}

TEST_F(LinuxApplicationSourceTest, ThePathIsSearchedInItsOrder) {
  program("usr/bin/app");
  program("opt/tools/app");
  environment.path = "/opt/tools:/usr/bin";
  system("app", "App", "app");
  EXPECT_EQ(idOf("/opt/tools/app"), "app");
  EXPECT_EQ(idOf("/usr/bin/app"), "");
}

TEST_F(LinuxApplicationSourceTest, SnapsOwnEverythingBelowTheirFolder) {
  program("usr/bin/snap");
  tree.link("snap/bin/firefox", "/usr/bin/snap");
  entry("var/lib/snapd/desktop/applications/firefox_firefox.desktop", "Firefox",
        "env BAMF_DESKTOP_FILE_HINT=/x /snap/bin/firefox %u", "X-SnapInstanceName=firefox\n");
  EXPECT_EQ(idOf("/snap/firefox/4090/usr/lib/firefox/firefox"), "firefox_firefox");
  EXPECT_EQ(idOf("/snap/other/1/bin/x"), "");
  EXPECT_EQ(idOf("/usr/bin/snap"), "");
}

TEST_F(LinuxApplicationSourceTest, FlatpaksAreFoundByTheirFiles) {
  const std::string exported = "var/lib/flatpak/exports/share/applications/";
  const std::string installed = "var/lib/flatpak/app/";
  for (const char* id : {"org.mozilla.firefox", "org.gimp.GIMP"}) {
    tree.link(exported + id + ".desktop",
              std::string("../../../app/") + id + "/current/active/export/" + id + ".desktop");
    tree.link(installed + id + "/current", "x86_64/stable");
    tree.link(installed + id + "/x86_64/stable/active", "abc123");
    entry(installed + id + "/x86_64/stable/abc123/export/" + id + ".desktop", id,
          std::string("/usr/bin/flatpak run ") + id, std::string("X-Flatpak=") + id + "\n");
    program(installed + id + "/x86_64/stable/abc123/files/bin/shared");
  }
  program(installed + "org.mozilla.firefox/x86_64/stable/abc123/files/lib/firefox/firefox");
  EXPECT_EQ(idOf("/app/lib/firefox/firefox"), "org.mozilla.firefox");
  EXPECT_EQ(idOf("/app/bin/shared"), "");  // it could be either's
  EXPECT_EQ(idOf("/app/bin/unknown"), "");
}

TEST_F(LinuxApplicationSourceTest, ADBusServiceOfTheIdIsTheApplication) {
  program("usr/libexec/gnome-terminal-server");
  script("usr/bin/gnome-terminal");
  system("org.gnome.Terminal", "Terminal", "gnome-terminal");
  tree.write("usr/share/dbus-1/services/org.gnome.Terminal.service",
             "[D-BUS Service]\nName=org.gnome.Terminal\nExec=/usr/libexec/gnome-terminal-server\n");
  tree.write("usr/share/dbus-1/services/org.other.service",
             "[D-BUS Service]\nName=org.other\nExec=/usr/libexec/other\n");
  EXPECT_EQ(idOf("/usr/libexec/gnome-terminal-server"), "org.gnome.Terminal");
}

TEST_F(LinuxApplicationSourceTest, AReplacedFileIsStillTheApplications) {
  program("usr/bin/gedit");
  system("gedit", "Text Editor", "gedit");
  EXPECT_EQ(idOf("/usr/bin/gedit (deleted)"), "gedit");
}

TEST_F(LinuxApplicationSourceTest, TheIndexIsMadeAtTheFirstQuestion) {
  program("usr/bin/a");
  program("usr/bin/b");
  auto applications = source();
  system("a", "A", "a");
  EXPECT_TRUE(applications.byExecutable("/usr/bin/a"));
  system("b", "B", "b");
  EXPECT_FALSE(applications.byExecutable("/usr/bin/b"));
}

TEST_F(LinuxApplicationSourceTest, HostileEntriesHarmNothing) {
  program("usr/bin/good");
  system("good", "Good", "good");
  tree.write("usr/share/applications/empty.desktop", "");
  tree.write("usr/share/applications/binary.desktop", std::string("\0\xff\n[Desktop Entry]\n", 18));
  tree.write("usr/share/applications/huge.desktop", std::string(3 * 1024 * 1024, '['));
  tree.write("usr/share/applications/.desktop", "[Desktop Entry]\nType=Application\nName=x\n");
  tree.write("usr/share/applications/folder.desktop/inside", "x");
  tree.link("usr/share/applications/circle", ".");
  tree.link("usr/share/applications/loop.desktop", "loop.desktop");
  tree.link("usr/share/applications/broken.desktop", "/nowhere.desktop");
  system("escape", "Escape", "/usr/bin/../../../../../../etc/passwd");
  system("flat", "Flat", "flatpak run ../../../etc");
  system("slash", "Slash", "/");
  EXPECT_EQ(idOf("/usr/bin/good"), "good");
  EXPECT_EQ(idOf("/app/passwd"), "");
}

TEST_F(LinuxApplicationSourceTest, AMachineWithoutADesktopHasNoApplications) {
  EXPECT_EQ(idOf("/usr/bin/bash"), "");
  EXPECT_EQ(source().pathForIdentifier("a"), std::nullopt);
}

}  // namespace
}  // namespace embrix
