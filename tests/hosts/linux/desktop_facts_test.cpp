#include "hosts/linux/desktop_facts.h"

#include <gtest/gtest.h>

#include <cstdarg>
#include <memory>
#include <string>

#include "bus_program.h"
#include "private_bus.h"
#include "turned_loop.h"

namespace embrix {
namespace {

constexpr const char* kPortalPath = "/org/freedesktop/portal/desktop";
constexpr const char* kSettings = "org.freedesktop.portal.Settings";
constexpr const char* kAppearance = "org.freedesktop.appearance";
constexpr const char* kInterface = "org.gnome.desktop.interface";

class LinuxDesktopFactsTest : public testing::Test {
 protected:
  // A portal that answers with these values, of the types "u" and "b".
  std::unique_ptr<BusProgram> portal(std::uint32_t colorScheme, bool animations) {
    return std::make_unique<BusProgram>(
        bus.address(), "org.freedesktop.portal.Desktop", kPortalPath,
        BusProgram::Answers{{"ReadAll", [=](sd_bus_message* call) {
                               sd_bus_message* answer = nullptr;
                               sd_bus_message_new_method_return(call, &answer);
                               const int result = sd_bus_message_append(
                                   answer, "a{sa{sv}}", 2, kAppearance, 2, "accent-color", "s",
                                   "blue", "color-scheme", "u", colorScheme, kInterface, 1,
                                   "enable-animations", "b", animations ? 1 : 0);
                               if (result >= 0) sd_bus_send(nullptr, answer, nullptr);
                               sd_bus_message_unref(answer);
                               return 1;
                             }}});
  }
  bool isSoon(const std::function<bool()>& isSo) { return turnUntil(loop, isSo); }

  PrivateBus bus;
  LinuxEventLoop loop;
  std::shared_ptr<BusConnection> session = std::make_shared<BusConnection>(loop, bus.address());
  LinuxDesktopFacts facts{session, loop.scheduler()};
};

TEST_F(LinuxDesktopFactsTest, ReadsWhatThePortalSays) {
  const auto dark = portal(1, false);
  EXPECT_FALSE(facts.prefersDark()) << "nothing has been said yet";
  EXPECT_FALSE(facts.reducesMotion());
  EXPECT_TRUE(isSoon([&] { return facts.prefersDark() == true; }));
  EXPECT_TRUE(facts.reducesMotion());
}

TEST_F(LinuxDesktopFactsTest, NoPreferenceIsNone) {
  const auto indifferent = portal(0, true);
  int told = 0;
  facts.onChange([&] { ++told; });
  facts.prefersDark();
  EXPECT_TRUE(isSoon([&] { return told > 0; }));
  EXPECT_FALSE(facts.prefersDark());
  EXPECT_FALSE(facts.reducesMotion());
}

TEST_F(LinuxDesktopFactsTest, TellsWhenASettingChanges) {
  const auto light = portal(2, true);
  facts.prefersDark();
  ASSERT_TRUE(isSoon([&] { return facts.prefersDark() == false; }));
  int told = 0;
  facts.onChange([&] { ++told; });
  light->run([](sd_bus* sender) {
    sd_bus_emit_signal(sender, kPortalPath, kSettings, "SettingChanged", "ssv", kAppearance,
                       "color-scheme", "u", 1U);
    sd_bus_emit_signal(sender, kPortalPath, kSettings, "SettingChanged", "ssv", kAppearance,
                       "reduced-motion", "u", 1U);
  });
  EXPECT_TRUE(isSoon([&] { return facts.prefersDark() == true && facts.reducesMotion(); }));
  EXPECT_GE(told, 2);
}

TEST_F(LinuxDesktopFactsTest, TellsOnceItListensEvenToADesktopThatSaysNothing) {
  int told = 0;
  facts.onChange([&] { ++told; });
  facts.prefersDark();
  EXPECT_TRUE(isSoon([&] { return told > 0; }));
}

TEST_F(LinuxDesktopFactsTest, TellsWhenATrayComes) {
  const auto portalSays = portal(0, true);
  int told = 0;
  facts.onChange([&] { ++told; });
  facts.prefersDark();
  ASSERT_TRUE(isSoon([&] { return told > 0; }));
  told = 0;
  BusProgram tray(bus.address(), "org.kde.StatusNotifierWatcher", "/StatusNotifierWatcher");
  ASSERT_TRUE(isSoon([&] { return told > 0; })) << "its watcher";
  told = 0;
  tray.run([](sd_bus* sender) {
    sd_bus_emit_signal(sender, "/StatusNotifierWatcher", "org.kde.StatusNotifierWatcher",
                       "StatusNotifierHostRegistered", "");
  });
  EXPECT_TRUE(isSoon([&] { return told > 0; })) << "what shows the items";
}

TEST_F(LinuxDesktopFactsTest, AValueOfAnotherTypeSaysNothing) {
  const auto dark = portal(1, true);
  facts.prefersDark();
  ASSERT_TRUE(isSoon([&] { return facts.prefersDark() == true; }));
  dark->run([](sd_bus* sender) {
    sd_bus_emit_signal(sender, kPortalPath, kSettings, "SettingChanged", "ssv", kAppearance,
                       "color-scheme", "s", "purple");
  });
  EXPECT_TRUE(isSoon([&] { return !facts.prefersDark().has_value(); }));
}

TEST_F(LinuxDesktopFactsTest, KnowsHowLongNobodyWasThere) {
  const BusProgram monitor(bus.address(), "org.gnome.Mutter.IdleMonitor",
                           "/org/gnome/Mutter/IdleMonitor/Core",
                           {{"GetIdletime", [](sd_bus_message* call) {
                               return sd_bus_reply_method_return(call, "t", std::uint64_t{601'250});
                             }}});
  EXPECT_FALSE(facts.idleSeconds());
  ASSERT_TRUE(isSoon([&] { return facts.idleSeconds().has_value(); }));
  EXPECT_GE(*facts.idleSeconds(), 601.25);
  EXPECT_LT(*facts.idleSeconds(), 700);
}

TEST_F(LinuxDesktopFactsTest, ADesktopThatSaysNothingIsAskedAgainAndAgainWithoutHarm) {
  int told = 0;
  const auto asked = [&] { return ++told > 20 || facts.idleSeconds().has_value(); };
  EXPECT_TRUE(isSoon(asked));
  EXPECT_FALSE(facts.idleSeconds());
  EXPECT_FALSE(facts.prefersDark());
}

}  // namespace
}  // namespace embrix
