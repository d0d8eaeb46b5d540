#include "hosts/linux/desktop_entry.h"

#include <gtest/gtest.h>

#include <string>

namespace embrix {
namespace {

TEST(DesktopEntryTest, AnEntryOfAnApplicationIsReadWhole) {
  const auto entry = parseDesktopEntry(
      "# made by hand\n"
      "[Desktop Entry]\n"
      "Type=Application\n"
      "Name=Text Editor\n"
      "Name[de]=Texteditor\n"
      "Icon=org.gnome.gedit\n"
      "Icon[de]=deutsch\n"
      "Exec = gedit %U \r\n"
      "TryExec=gedit\n"
      "NoDisplay=true\n"
      "X-Flatpak=org.gnome.gedit\n"
      "X-SnapInstanceName=gedit\n"
      "[Desktop Action new]\n"
      "Name=New Window\n"
      "Exec=gedit --new-window\n");
  DesktopEntry expected;
  expected.name = "Text Editor";
  expected.icon = "org.gnome.gedit";
  expected.exec = "gedit %U";
  expected.tryExec = "gedit";
  expected.flatpakID = "org.gnome.gedit";
  expected.snapInstance = "gedit";
  expected.isNoDisplay = true;
  EXPECT_EQ(entry, expected);
}

TEST(DesktopEntryTest, WhatIsNoEntryOfANamedApplicationIsAbsent) {
  struct Case {
    const char* label;
    const char* text;
    bool isEntry;
  };
  const Case cases[] = {
      {"the least", "[Desktop Entry]\nType=Application\nName=A", true},
      {"started over D-Bus", "[Desktop Entry]\nType=Application\nName=A\nDBusActivatable=true\n",
       true},
      {"a link", "[Desktop Entry]\nType=Link\nName=A\nURL=http://a\n", false},
      {"no type", "[Desktop Entry]\nName=A\nExec=a\n", false},
      {"no name", "[Desktop Entry]\nType=Application\nExec=a\n", false},
      {"an empty name", "[Desktop Entry]\nType=Application\nName=\n", false},
      {"a translated name alone", "[Desktop Entry]\nType=Application\nName[de]=A\n", false},
      {"another group", "[Some Entry]\nType=Application\nName=A\n", false},
      {"no group", "Type=Application\nName=A\n", false},
      {"commented out", "[Desktop Entry]\n#Type=Application\nName=A\n", false},
      {"empty", "", false},
      {"bytes", "\xff\xfe\x01=\x02\n[", false},
      {"deleted by the user", "[Desktop Entry]\nHidden=true\n", true},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(parseDesktopEntry(c.text).has_value(), c.isEntry) << c.label;
  }
}

TEST(DesktopEntryTest, EscapesAreUndoneOnce) {
  const auto entry = parseDesktopEntry(
      "[Desktop Entry]\nType=Application\nName=a\\sb\\\\c\\t\\n\\r.\nExec=\"/opt/a\\\\$b\" \\q "
      "\\\n");
  ASSERT_TRUE(entry);
  EXPECT_EQ(entry->name, "a b\\c\t\n\r.");
  EXPECT_EQ(entry->exec, "\"/opt/a\\$b\" \\q \\");
}

TEST(DesktopEntryTest, ANameArrivesAsValidText) {
  EXPECT_EQ(parseDesktopEntry("[Desktop Entry]\nType=Application\nName=A\xff\n")->name, "A\uFFFD");
}

}  // namespace
}  // namespace embrix
