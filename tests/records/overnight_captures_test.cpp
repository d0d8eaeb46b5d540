// Power logs of real machines. Beside each stand rows of the same kind and figures, for a run that
// is not given the captures.
#include <string>
#include <string_view>

#include <gtest/gtest.h>

#include "fakes/captures.h"
#include "log_rows.h"
#include "records/overnight_log.h"

namespace embrix {
namespace {

std::optional<Overnight> nightOf(std::string_view capture, std::string_view handMade) {
  return OvernightLog::parse(
      captureOr(std::string("01_pmset_log/") + std::string(capture), handMade));
}

constexpr std::string_view kIntelNight = R"log(PM ASL data store: /var/log/powermanagement

Time stamp                Domain              	Message                        	Duration  	Delay     
==========                ======              	=======                        	========  	=====     
2016-06-01 21:05:30 +0200 Wake                	DarkWake to FullWake from Deep Idle [CDNVA] due to HID Activity: Using AC (Charge:79%)           
2016-06-01 21:05:38 +0200                     	Summary- [System: PrevIdle DeclUser kDisp] Using AC(Charge: 79)            	          
2016-06-01 23:29:15 +0200 Sleep               	Entering Sleep state due to 'Clamshell Sleep': Using AC (Charge:100%) 3600 secs 
2016-06-01 23:29:18 +0200 Wake Requests       	[proc=mDNSResponder request=Maintenance inDelta=7197] [*proc=UserEventAgent request=TimerPlugin inDelta=3596 info="AppRefresh:com.apple.backupd-auto,"]           
2016-06-02 00:29:15 +0200 DarkWake            	DarkWake from Deep Idle [CDNPB] due to RTC/Maintenance: Using AC (Charge:100%) 123 secs  
2016-06-02 00:31:18 +0200 Sleep               	Entering Sleep state due to 'Maintenance Sleep': Using AC (Charge:100%) 3600 secs 
2016-06-02 01:31:18 +0200 DarkWake            	DarkWake from Deep Idle [CDNPB] due to RTC/Maintenance: Using AC (Charge:100%) 60 secs   
2016-06-02 02:32:18 +0200 DarkWake            	DarkWake from Deep Idle [CDNPB] due to RTC/Maintenance: Using AC (Charge:100%) 60 secs   
2016-06-02 03:33:18 +0200 DarkWake            	DarkWake from Deep Idle [CDNPB] due to RTC/Maintenance: Using AC (Charge:100%) 60 secs   
2016-06-02 04:34:18 +0200 DarkWake            	DarkWake from Deep Idle [CDNPB] due to RTC/Maintenance: Using AC (Charge:100%) 45 secs   
2016-06-02 05:35:03 +0200 DarkWake            	DarkWake from Deep Idle [CDNPB] due to RTC/Maintenance: Using AC (Charge:100%) 72 secs   
2016-06-02 05:36:15 +0200 Sleep               	Entering Sleep state due to 'Maintenance Sleep': Using AC (Charge:100%)           
2016-06-02 06:31:14 +0200 DarkWake            	DarkWake from Deep Idle [CDN] due to EC.ACDetach/Maintenance: Using BATT (Charge:100%) 4 secs    
2016-06-02 06:31:18 +0200 Wake                	DarkWake to FullWake from Deep Idle [CDNVA] due to HID Activity: Using BATT (Charge:100%) 43 secs   
2016-06-02 06:32:01 +0200 Sleep               	Entering Sleep state due to 'Clamshell Sleep': Using Batt (Charge:100%) 5659 secs 
2016-06-02 08:06:20 +0200 Wake                	Wake from Deep Idle [CDNVA] due to EC.LidOpen/Lid Open: Using BATT (Charge:100%) 1266 secs 
2016-06-02 08:27:26 +0200 Sleep               	Entering Sleep state due to 'Clamshell Sleep': Using Batt (Charge:99%) 10806 secs
2016-06-02 11:27:32 +0200 DarkWake            	DarkWake from Deep Idle [CDN] due to EC.SleepTimer/SleepTimer: Using BATT (Charge:98%) 0 secs    
2016-06-02 11:27:32 +0200 HibernateStats      	hibmode=3 standbydelay=10800                   	          rd=222 ms 	
2016-06-02 11:27:32 +0200 Sleep               	Entering Sleep state due to 'Maintenance Sleep': Using Batt (Charge:98%) 29613 secs
2016-06-02 19:41:05 +0200 Wake                	Wake from Standby [CDNVA] due to EC.LidOpen/Lid Open: Using BATT (Charge:98%)           
Sleep/Wakes since boot:79   Dark Wake Count in this sleep cycle:0
2016-06-02 19:41:05 +0200 :Showing all currently held IOKit power assertions
Assertion status system-wide:
   PreventSystemSleep             0
   pid 103(mDNSResponder): [0x0000] 00:00:00 UserIsActive named: "x"
)log";

// The last wake is that of 19:41:05 (1464889265), the one before that of 08:06:20. The first sleep
// in between is that of 08:27:26, 40419 seconds earlier. One dark wake of "0 secs", put down to a
// timer of the controller, which is none of the known causes. All on battery. The listing of
// assertions at the end holds nothing.
TEST(OvernightCapturesTest, ACompleteLogOfAnIntelMac) {
  EXPECT_EQ(nightOf("intel_2016-06_full_log_sample_736_lines.txt", kIntelNight),
            (Overnight{.sleptAt = 1464889265 - 40419,
                       .wokeAt = 1464889265,
                       .darkWakes = 1,
                       .awakeSeconds = 0,
                       .chargeAtSleep = 99,
                       .chargeAtWake = 98,
                       .onPower = false,
                       .causes = {{"The system", 1}},
                       .requesters = {}}));
}

// The same log as it stood after the wake of 06:31:18: a night from 23:29:15 on, 25323 seconds.
// Dark wakes of 123, 60, 60, 60, 45, 72 and 4 seconds, all for maintenance: the last because that
// word stands behind ACDetach. Starred requests of that system say proc= instead of process=, and
// count for nobody.
TEST(OvernightCapturesTest, TheNightBeforeInThatLog) {
  std::string log =
      captureOr("01_pmset_log/intel_2016-06_full_log_sample_736_lines.txt", kIntelNight);
  log.resize(log.find("2016-06-02 06:32:01 +0200 Sleep"));
  EXPECT_EQ(OvernightLog::parse(log), (Overnight{.sleptAt = 1464841878 - 25323,
                                                 .wokeAt = 1464841878,
                                                 .darkWakes = 7,
                                                 .awakeSeconds = 424,
                                                 .chargeAtSleep = 100,
                                                 .chargeAtWake = 100,
                                                 .onPower = true,
                                                 .causes = {{"Scheduled maintenance", 7}},
                                                 .requesters = {}}));
}

// Three dark wakes of other chips. The first row says Sleep, and the next wake comes 16672 seconds
// later. The first dark wake has no seconds, the second 3. "USB-C_plug" stands before " AC ".
TEST(OvernightCapturesTest, AChargeOverNight) {
  EXPECT_EQ(
      nightOf(
          "m_series_2026-09-03_ac_dark_and_plug.txt",
          R"log(2026-09-03 03:57:19 -0700 Sleep               	Entering Sleep state due to 'Maintenance Sleep':TCPKeepAlive=active Using AC (Charge:73%) 900 secs
2026-09-03 04:12:19 -0700 DarkWake            	DarkWake from Deep Idle [CDNPB] : due to NUB.SPMI0.SW3 nub-spmi0.0x02 rtc/Maintenance Using AC (Charge:73%)
2026-09-03 04:12:20 -0700 Wake Requests       	[*process=powerd request=Maintenance deltaSecs=900 wakeAt=2026-09-03 04:27:20]
2026-09-03 08:29:28 -0700 Sleep               	Entering Sleep state due to 'Maintenance Sleep':TCPKeepAlive=active Using AC (Charge:100%) 340 secs
2026-09-03 08:35:08 -0700 DarkWake            	DarkWake from Deep Idle [CDNPB] : due to smc.sysState.Wake(0x70070000) USB-C_plug Using AC (Charge:100%) 3 secs
2026-09-03 08:35:11 -0700 Wake                	DarkWake to FullWake from Deep Idle [CDNVA] : due to UserActivity Assertion Using BATT (Charge:100%)
)log"),
      (Overnight{.sleptAt = 1788449711 - 16672,
                 .wokeAt = 1788449711,
                 .darkWakes = 2,
                 .awakeSeconds = 3,
                 .chargeAtSleep = 73,
                 .chargeAtWake = 100,
                 .onPower = true,
                 .causes = {{"Scheduled maintenance", 1}, {"A USB accessory", 1}},
                 .requesters = {{"macOS power management", 1}}}));
}

// Sleep rows whose end was cut off have no charge, and neither has the wake. Seconds of the dark
// wake: 2. dasd asked twice. The wake itself is on the adapter.
TEST(OvernightCapturesTest, RowsWithoutCharges) {
  EXPECT_EQ(
      nightOf(
          "m_series_2026-09-17_clamshell_trimmed_no_charge.txt",
          R"log(2026-09-17 02:52:28 +0200 Sleep               	Entering Sleep state due to 'Clamshell Sleep':TCPKeepAlive=active
2026-09-17 02:52:29 +0200 Wake Requests       	[*process=dasd request=SleepService deltaSecs=976 wakeAt=2026-09-17 03:08:46]
2026-09-17 03:08:46 +0200 DarkWake            	DarkWake from Deep Idle [CDNP] : due to rtc/SleepService Using BATT (Charge:95%) 2 secs
2026-09-17 03:08:47 +0200 WakeTime            	WakeTime: 1.2 sec
2026-09-17 03:08:48 +0200 Sleep               	Entering Sleep state due to 'Sleep Service Back to Sleep':TCPKeepAlive=active
2026-09-17 03:08:51 +0200 Wake Requests       	[*process=dasd request=SleepService deltaSecs=932 wakeAt=2026-09-17 03:24:23]
2026-09-17 09:03:08 +0200 Wake                	Wake from Deep Idle [CDNP] : due to UserActivity Using AC
)log"),
      (Overnight{.sleptAt = 1789628588 - 22240,
                 .wokeAt = 1789628588,
                 .darkWakes = 1,
                 .awakeSeconds = 2,
                 .chargeAtSleep = std::nullopt,
                 .chargeAtWake = std::nullopt,
                 .onPower = true,
                 .causes = {{"Scheduled maintenance", 1}},
                 .requesters = {{"Background tasks", 2}}}));
}

// The first sleep is that of 17:20:01 although the Mac was up at 17:24 for an assertion: no wake
// row says so. 6060 seconds to the wake of 19:01:01. What comes behind the wake does not count.
TEST(OvernightCapturesTest, AnAfternoonOnBattery) {
  EXPECT_EQ(
      nightOf(
          "m_series_2026-10-04_clamshell_battery.txt",
          R"log(2026-10-04 17:20:01 -0400 Sleep               	Entering Sleep state due to 'Maintenance Sleep':TCPKeepAlive=active Using Batt (Charge:63%) 2 secs
2026-10-04 17:24:00 -0400 Assertions          	PID 501(caffeinate) Created PreventUserIdleSystemSleep "caffeinate command-line tool"
2026-10-04 17:28:09 -0400 Sleep               	Entering Sleep state due to 'Clamshell Sleep':TCPKeepAlive=active Using Batt (Charge:63%) 13 secs
2026-10-04 17:28:22 -0400 DarkWake            	DarkWake from Deep Idle [CDNP] : due to smc.sysState.Wake(0x70070000) wifibt Using BATT (Charge:63%) 121 secs
2026-10-04 17:30:23 -0400 Sleep               	Entering Sleep state due to 'Maintenance Sleep':TCPKeepAlive=active Using Batt (Charge:63%) 462 secs
2026-10-04 19:01:01 -0400 Wake                	Wake from Deep Idle [CDNVA] : due to smc.sysState.Wake(0x70070000) lid HID Activity Using BATT (Charge:63%)
2026-10-04 19:11:03 -0400 Sleep               	Entering Sleep state due to 'Clamshell Sleep':TCPKeepAlive=active Using Batt (Charge:60%) 3 secs
)log"),
      (Overnight{.sleptAt = 1791154861 - 6060,
                 .wokeAt = 1791154861,
                 .darkWakes = 1,
                 .awakeSeconds = 121,
                 .chargeAtSleep = 63,
                 .chargeAtWake = 63,
                 .onPower = false,
                 .causes = {{"Wi-Fi or Bluetooth", 1}},
                 .requesters = {}}));
}

// 07:15:00 to 09:10:12 are 6912 seconds without a dark wake; a lower charge at its end in spite of
// the adapter is what the rows say.
TEST(OvernightCapturesTest, ASleepWithoutADarkWake) {
  EXPECT_EQ(
      nightOf(
          "m1_MacBookPro17,1_macos26.2_clamshell.txt",
          R"log(2026-09-12 07:15:00 -0300 Sleep               	Entering Sleep state due to 'Maintenance Sleep':TCPKeepAlive=active Using Batt (Charge:100%) 92 secs
2026-09-12 09:09:08 -0300 Notification        	Display is turned off
2026-09-12 09:09:13 -0300 Sleep               	Entering Sleep state due to 'Clamshell Sleep':TCPKeepAlive=active Using AC (Charge:84%) 59 secs
2026-09-12 09:10:12 -0300 Wake                	Wake from Deep Idle [CDNVA] : due to smc.sysState.Wake(0x70070000) lid SMC.OutboxNotEmpty/UserActivity Assertion Using AC (Charge:84%)
)log"),
      (Overnight{.sleptAt = 1789215012 - 6912,
                 .wokeAt = 1789215012,
                 .darkWakes = 0,
                 .awakeSeconds = 0,
                 .chargeAtSleep = 100,
                 .chargeAtWake = 84,
                 .onPower = true,
                 .causes = {},
                 .requesters = {}}));
}

// A byte that is not UTF-8 on a row of its own; 02:52:28 to 09:03:08.
TEST(OvernightCapturesTest, AByteThatIsNotUTF8) {
  EXPECT_EQ(nightOf("non_utf8_byte_in_log.bin",
                    "2026-09-17 02:52:28 +0200 Sleep               \tEntering Sleep state\n"
                    "   pid 409(WindowServer): UserIsActive named: \xED tickle\n"
                    "2026-09-17 09:03:08 +0200 Wake                \tWake from Deep Idle\n"),
            (Overnight{.sleptAt = 1789628588 - 22240, .wokeAt = 1789628588}));
}

TEST(OvernightCapturesTest, LogsThatTellOfNoNight) {
  struct Case {
    std::string label;
    std::string capture;
    std::string handMade;
  };
  for (const auto& [label, capture, handMade] : {
           Case{"tabs that became blanks: no row has a kind",
                "intel_2021-04-11_desktop_tabs_lost_to_spaces.txt",
                "2021-04-11 16:03:05 +0800 Sleep                 Entering Sleep (Charge:0%)\n"
                "2021-04-11 16:49:17 +0800 Wake                  Wake (Charge:0%)\n"},
           Case{"headers, totals and kinds that overflow", "long_kinds_and_odd_lines.txt",
                "2025-02-07 07:00:02 -0500 com.apple.sleepservices.sessionTerminated\tx\n"
                "Total Sleep/Wakes since boot at 2026-08-30 15:27:54 -0600 :7\n"
                "2026-09-29 10:07:00 +0100 : Showing all currently held IOKit assertions\n"},
           Case{"dark wakes, but no full wake", "m1pro_macos15.3_yubikey_7s.txt",
                row("2025-02-07 07:00:05", "Sleep", "Using Batt (Charge:76%) 2 secs") +
                    row("2025-02-07 08:00:07", "DarkWake", "Using BATT (Charge:76%) 7 secs")},
           Case{"a wake without a sleep", "m_series_2026-05-30_sleepservice_and_standby.txt",
                row("2026-05-30 14:29:24", "Wake", "due to EC.LidOpen/Lid Open") +
                    "garbage line without timestamp\n"},
           Case{"439 seconds of sleep", "m_series_2026-08-27_notification_wake_ac.txt",
                row("2026-08-27 08:50:32", "Sleep", "Using AC (Charge:100%) 202 secs") +
                    row("2026-08-27 08:57:51", "Wake", "Using AC (Charge:100%) 30 secs")},
           Case{"colour codes, and a wake row that lost its tab",
                "m_series_2026-10-03_ansi_and_long_darkwake.txt",
                "2026-10-03 07:00:14 +0900 Notification         \x1b[01;31m\x1b[KDisplay\n" +
                    row("2026-10-03 07:00:20", "Sleep", "Using AC (Charge:80%) 948 secs") +
                    "2026-10-03 08:15:41 +0900 Wake                 Using AC (Charge:80%)\n"},
           Case{"a desktop that only enters dark wakes",
                "m_series_desktop_2026-09-25_darkwake_only_never_slept.txt",
                row("2026-09-25 15:57:27", "Sleep", "Entering DarkWake state Using AC") +
                    row("2026-09-25 16:03:15", "Wake", "DarkWake to FullWake Using AC") +
                    row("2026-09-25 16:31:57", "Sleep", "Entering DarkWake state Using AC") +
                    row("2026-09-25 16:39:05", "Wake", "DarkWake to FullWake Using AC")},
       }) {
    EXPECT_EQ(nightOf(capture, handMade), std::nullopt) << label;
  }
}

// The row of seven seconds: the cause is wifibt, the request that counted is dasd's.
TEST(OvernightCapturesTest, RowsOfALogWithoutANight) {
  const std::string log = captureOr(
      "01_pmset_log/m1pro_macos15.3_yubikey_7s.txt",
      R"log(2025-02-07 07:00:06 -0500 Wake Requests       	[*process=dasd request=SleepService deltaSecs=960 info="com.apple.dasd:501:com.apple.duetexpertd.everydayshortcuts"] [process=powerd request=TCPKATurnOff]
2025-02-07 07:00:07 -0500 DarkWake            	DarkWake from Deep Idle [CDNP] : due to SMC.OutboxNotEmpty smc.70070000 wifibt/ Using BATT (Charge:76%) 7 secs    
)log");
  const auto lineAt = [&](std::string_view start) {
    const auto place = log.find(start);
    return OvernightLog::line(std::string_view(log).substr(place, log.find('\n', place) - place));
  };
  const auto wake = lineAt("2025-02-07 07:00:07 -0500 DarkWake").value();
  EXPECT_EQ(wake.kind, "DarkWake");
  EXPECT_EQ(OvernightLog::cause(wake.detail), "Wi-Fi or Bluetooth");
  const auto request = lineAt("2025-02-07 07:00:06 -0500 Wake Requests").value();
  EXPECT_EQ(OvernightLog::starredRequester(request.detail), "Background tasks");
}

}  // namespace
}  // namespace embrix
