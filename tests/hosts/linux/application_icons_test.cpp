#include "hosts/linux/application_icons.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>

#include "captured_tree.h"

namespace embrix {
namespace {

using Kind = ApplicationIcon::Kind;

constexpr const char* kEntry = "/usr/share/applications/editor.desktop";

class LinuxApplicationIconsTest : public testing::Test {
 protected:
  std::optional<ApplicationIcon> iconFor(const std::string& line) {
    tree.write(std::string(kEntry).substr(1),
               "[Desktop Entry]\nType=Application\nName=Editor\n" + line + "\n");
    return icons.iconOf(kEntry);
  }

  CapturedTree tree;
  LinuxApplicationIcons icons{tree.root()};
};

TEST_F(LinuxApplicationIconsTest, AnEntrysIconIsANameOrAPath) {
  struct Case {
    const char* label;
    const char* line;
    std::optional<ApplicationIcon> expected;
  };
  const Case cases[] = {
      {"a name", "Icon=org.gnome.gedit", ApplicationIcon{Kind::named, "org.gnome.gedit"}},
      {"a path", "Icon=/opt/editor/a\\sb.png",
       ApplicationIcon{Kind::picture, "/opt/editor/a b.png"}},
      {"a name with a format", "Icon=editor.png", ApplicationIcon{Kind::named, "editor"}},
      {"a format alone", "Icon=.png", ApplicationIcon{Kind::named, ".png"}},
      {"neither", "Icon=../../secret", std::nullopt},
      {"empty", "Icon=", std::nullopt},
      {"none", "Exec=editor", std::nullopt},
      {"of another language alone", "Icon[de]=editor", std::nullopt},
  };
  for (const Case& c : cases) EXPECT_EQ(iconFor(c.line), c.expected) << c.label;
}

TEST_F(LinuxApplicationIconsTest, ExportedEntriesAreSeenThrough) {
  tree.write("var/lib/export/editor.desktop",
             "[Desktop Entry]\nType=Application\nName=Editor\nIcon=editor\n");
  tree.link(std::string(kEntry).substr(1), "/var/lib/export/editor.desktop");
  EXPECT_EQ(icons.iconOf(kEntry), (ApplicationIcon{Kind::named, "editor"}));
}

TEST_F(LinuxApplicationIconsTest, WhatIsNoEntryHasNoIcon) {
  tree.write("opt/editor", "[Desktop Entry]\nType=Application\nName=Editor\nIcon=editor\n");
  tree.write("opt/link.desktop", "[Desktop Entry]\nType=Link\nName=Page\nIcon=page\n");
  tree.write("opt/noise.desktop", std::string("\xff\0[Desktop", 10));
  for (const char* path : {"", "/", "editor.desktop", "/opt/editor", "/opt/link.desktop",
                           "/opt/noise.desktop", "/opt/missing.desktop", "/opt"}) {
    EXPECT_EQ(icons.iconOf(path), std::nullopt) << path;
  }
}

}  // namespace
}  // namespace embrix
