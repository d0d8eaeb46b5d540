// The heart of the program: the newest frame and everything that follows from it, what may be done
// about it, and the sentences that tell it. Loads what earlier runs left on disk, asks for frames
// again and again, and keeps the records.
//
// Surfaces read its fields, subscribe to them and call its operations; they see neither the sampler
// nor the files. What one operation changes is told when it ends, so nobody sees half of it. A
// reader must not destroy the model while it is told.
//
// Lives on the main thread for the life of the process. Watts, seconds, watt-hours; a date is in
// seconds since 1970.
#pragma once

#include <cstdint>
#include <functional>
#include <limits>
#include <list>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "base/hash_map.h"
#include "base/observed.h"
#include "base/scheduler.h"
#include "cleanup/cleanup.h"
#include "frame/frame.h"
#include "model/alert_policy.h"
#include "model/calm_rule.h"
#include "model/control_state.h"
#include "model/dashboard_section.h"
#include "model/load_level.h"
#include "model/notification_router.h"
#include "model/power_model_ports.h"
#include "model/verdict.h"
#include "records/archive.h"
#include "records/day_ledger.h"
#include "records/discharge_session.h"
#include "records/history.h"
#include "records/overnight_log.h"
#include "records/power_baseline.h"
#include "records/window_counts.h"
#include "records/window_sums.h"
#include "running/forgotten_row.h"

namespace embrix {

class PowerModel {
 public:
  // What the last stop gave back.
  struct Freed {
    double date = 0;
    std::uint64_t bytes = 0;  // memory, as it was asked for; not as it was confirmed

    bool operator==(const Freed&) const = default;
  };

  // All that demo data shows.
  struct FixtureData {
    Frame frame;
    History history{kHistoryPoints};
    std::optional<DischargeSession> discharge;
    Archive archive;
    std::optional<Overnight> overnight;
    DayLedger ledger;
    HashMap<SharedText, double> tenMinuteAverages;
  };

  using Pids = std::set<std::int32_t>;
  using Averages = HashMap<SharedText, double>;
  using GroupNames = HashMap<SharedText, SharedText>;
  using OpenDashboard = std::function<void(DashboardSection)>;
  // Absent when no frame came in time. The reference is good for the call.
  using FrameReply = std::function<void(const std::optional<Frame>&)>;

  static constexpr std::size_t kHistoryPoints = 1800;
  static constexpr double kAlertCooldown = 1800;  // seconds

  // Sets everything to its start and reads what the settings hold. Nothing happens before start().
  explicit PowerModel(PowerModelPorts ports);
  PowerModel(const PowerModel&) = delete;
  PowerModel& operator=(const PowerModel&) = delete;
  ~PowerModel();

  // The one that runs, null when none does: how answers to notifications and actions of other
  // programs find it.
  static PowerModel* shared();

  // Loads the records, hears of sleep, wake and the end, and begins to sample. Once; not with demo
  // data.
  void start();

  // ---- Fields. `frame` and `history` tell of every frame, the others of a change. ----

  const Observed<std::optional<Frame>>& frame() const { return frame_; }  // absent until the first
  const Observed<History>& history() const { return history_; }
  // Mean watts over the last 600 seconds, by key, of the first 50 groups.
  const Observed<Averages>& tenMinuteAverages() const { return tenMinuteAverages_; }
  const Observed<GroupKeys>& runaways() const { return runaways_; }  // see RunawayDetector
  // The last display name of every group that was ever seen to draw power, by key.
  const Observed<GroupNames>& groupNames() const { return groupNames_; }
  // Pids that are slowed down by this program.
  const Observed<Pids>& calmed() const { return calmed_; }
  const Observed<DayLedger>& ledger() const { return ledger_; }  // today
  const Observed<Archive>& archive() const { return archive_; }  // with today
  const Observed<std::optional<Overnight>>& overnight() const { return overnight_; }
  // Absent on a machine without a battery, and before the first time on it.
  const Observed<std::optional<DischargeSession>>& discharge() const { return discharge_; }
  const Observed<std::optional<Freed>>& lastFreed() const { return lastFreed_; }
  const Observed<std::vector<CalmRule>>& calmRules() const { return calmRules_; }
  const Observed<Pids>& autoCalmed() const { return autoCalmed_; }       // those of a rule
  const Observed<std::set<std::string>>& kept() const { return kept_; }  // LeftRunning::keptKey
  const Observed<int>& visibleSurfaces() const { return visibleSurfaces_; }
  const Observed<DashboardSection>& dashboardSection() const { return dashboardSection_; }
  const Observed<bool>& isFixture() const { return isFixture_; }  // shows demo data
  const Observed<PowerBaseline>& baseline() const { return baseline_; }
  Cleanup& cleanup() { return cleanup_; }
  Settings& defaults() { return ports_.defaults; }
  std::uint32_t uid() const { return ports_.user.uid; }  // of the user whose program this is

  // ---- What follows from them, worked out at each call. ----

  double totalWatts() const;  // of the whole machine; 0 without a frame
  LoadThresholds thresholds() const;
  LoadLevel loadLevel() const;
  bool isHeated() const;  // not calm, or slowed down by the system because of heat
  bool isHot() const;     // hot, or slowed down by the system because of heat

  // The first group of the frame that has such a process. Null without one; good until the next
  // frame.
  const AppGroup* groupForPID(std::int32_t pid) const;

  // The watts of a group over the last so many seconds, in `points` values at most; all of them for
  // `points` below 1.
  std::vector<double> seriesFor(std::string_view key, double seconds, int points) const;

  // Points of charge since the machine was unplugged; absent when that is not known.
  std::optional<int> percentUsedSinceUnplug() const;

  // ---- Left running. ----

  // What nobody seems to be using and the user does not keep; most watts first, then the oldest.
  std::vector<ForgottenRow> forgottenRows() const;
  std::vector<ForgottenItem> keptItems() const;
  void keep(const ForgottenItem& item);
  void unkeep(const ForgottenItem& item);
  void stop(const ForgottenRow& row);
  void stopAllForgotten();

  // Minutes that the battery would last at so many watts; on power, that a full one would.
  std::optional<double> runtimeAtWatts(double watts) const;
  // Minutes that would be won if so many watts were no longer drawn.
  std::optional<double> minutesGainedStopping(double watts) const;
  // The same where it is worth promising: from a minute up to five hours, with enough left to
  // judge.
  std::optional<double> meaningfulGainStopping(double watts) const;
  // What the screen and the rest of the machine draw besides the apps.
  std::optional<double> unattributedWatts() const;

  // ---- Calm, restore, quit, stop. Processes of other users are left alone. ----

  // The rows of the program that draws most in that group: all copies of it, of any user.
  std::vector<ProcessRow> targetsInGroup(std::string_view key) const;
  bool isCalmed(const std::vector<ProcessRow>& rows) const;  // all of them, and at least one
  void calm(const std::vector<ProcessRow>& rows);
  void restore(const std::vector<ProcessRow>& rows);
  void restoreAllCalmed();
  void quit(const ProcessRow& row);
  void stop(std::int32_t pid);  // nothing for a pid that is not in the frame

  // ---- Rules. Each edit is stored and takes effect at once. ----

  // One rule for a name: another condition for a name that has one.
  void addCalmRule(const std::string& name, CalmRule::Condition condition);
  void updateCalmRule(const CalmRule& rule);
  void removeCalmRule(const CalmRule& rule);
  std::optional<CalmRule> calmRuleForApp(std::string_view name) const;

  // ---- Words. ----

  std::string heroHeadline() const;
  std::string heroExplanation() const;
  std::string statusShort() const;
  std::optional<std::string> batteryLine() const;
  // What an alert calls a group: "node ×3 in Code".
  std::string subjectForGroup(std::string_view key) const;

  // ---- Surfaces and what reaches the program from outside. ----

  void surfaceAppeared();
  void surfaceDisappeared();
  void showSection(DashboardSection section) { dashboardSection_ = section; }
  // How the dashboard is opened, as soon as something is there to open it.
  void setOpenDashboard(OpenDashboard open) { openDashboard_ = std::move(open); }
  void openConsole();  // opens the dashboard on its first page
  // What the user asked for on a notification, of the group as it is now.
  void handle(NotificationRouter::Action action, const std::string& groupKey);

  // Replies as soon as there is a frame, or when so many seconds are over; at once, in this call,
  // when there is one already.
  void waitForFrame(double seconds, FrameReply reply);

  // Reads the power log for the story of the last sleep; unless forced, not within half an hour of
  // the last time.
  void refreshOvernight(bool force);

  // ---- Demo data. ----

  // Shows this from now on. Nothing is sampled, and no process is touched on the user's request.
  void showFixture(FixtureData data);
  // What stands for a stop there.
  void removeFromFixture(std::int32_t pid);

 private:
  // While one of these lives nothing is told; the last to end tells all that changed.
  class Changes {
   public:
    explicit Changes(PowerModel& model);
    Changes(const Changes&) = delete;
    Changes& operator=(const Changes&) = delete;
    ~Changes();

   private:
    PowerModel& model_;
  };

  struct SaveTurn;
  struct FrameWait {
    double wallDeadline = 0;
    double uptimeDeadline = 0;  // so that a clock that is set back ends the wait all the same
    FrameReply reply;
    Scheduled poll;
  };

  // Start times by pid, for processes that must not be taken for later ones of the same pid. Absent
  // when not known, as with demo data.
  using StartTimes = std::map<std::int32_t, std::optional<std::int64_t>>;

  static constexpr double kNever = -std::numeric_limits<double>::infinity();

  template <typename Visit>
  void forEachObserved(Visit visit);

  void loadRecords();
  void seedBaseline();
  void listen();

  void askForFrame();
  void takeFrame(std::optional<Frame> frame);
  double currentInterval() const;
  void lookForFrame(std::list<FrameWait>::iterator wait);

  void apply(Frame frame);
  void nameGroups();
  void appendHistory(const Verdict& verdict);
  void averageTenMinutes();
  void findRunaways();
  void recordLedger(const std::optional<Frame>& previous, const Verdict& verdict);
  void recordDischarge(const std::optional<Frame>& previous);
  void addToBaseline();
  void pruneCalmed();
  void applyCalmRules();
  void sendAlerts(const std::optional<Frame>& previous);
  void publishControlState(const Verdict& verdict);
  void saveHistoryPeriodically();

  void save();
  void willSleep();
  void didWake();

  bool isOnBattery() const;
  bool isThrottled() const;
  StartTimes living(const StartTimes& processes) const;
  int calmProcess(const ProcessRow& row);
  void markCalmed(const ProcessRow& row);
  void restoreProcess(std::int32_t pid);
  void forgetCalmed(std::int32_t pid);
  Pids wantedByRules(bool isHotForRules) const;
  void letGo(const Pids& wanted);
  void calmWanted(const Pids& wanted);
  void saveCalmRules();

  void storeKept(std::set<std::string> kept);
  void shutDownOrQuit(const ForgottenRow& row);

  bool hasOwnTarget(std::string_view key) const;
  void alertRunaway(const SharedText& key);
  void alertThrottling();

  void readPowerLog();

  static inline PowerModel* shared_ = nullptr;

  PowerModelPorts ports_;

  Observed<std::optional<Frame>> frame_;
  Observed<History> history_{History(kHistoryPoints)};
  Observed<Averages> tenMinuteAverages_;
  Observed<GroupKeys> runaways_;
  Observed<GroupNames> groupNames_;
  Observed<Pids> calmed_;
  Observed<DayLedger> ledger_;
  Observed<Archive> archive_;
  Observed<std::optional<Overnight>> overnight_;
  Cleanup cleanup_;
  double overnightReadAt_ = kNever;  // uptime
  Observed<std::optional<DischargeSession>> discharge_;
  Observed<std::optional<Freed>> lastFreed_;
  Observed<std::vector<CalmRule>> calmRules_;
  Observed<Pids> autoCalmed_;
  StartTimes autoCalmOverrides_;       // what the user restored by hand, which rules leave alone
  bool wasHot_ = false;                // by AutoCalm::isHot
  std::optional<bool> wasOnBattery_;   // absent until the first frame with a battery
  std::optional<double> pendingWake_;  // a wake that the discharge session has not heard of; date
  Observed<std::set<std::string>> kept_;
  Observed<int> visibleSurfaces_{0};
  Observed<DashboardSection> dashboardSection_{DashboardSection::overview};
  OpenDashboard openDashboard_;
  AlertPolicy alerts_{kAlertCooldown};
  int framesSinceSave_ = 0;
  std::optional<ControlState> lastControlState_;
  double lastControlReload_ = kNever;  // uptime
  NotificationRouter notifications_;
  Observed<bool> isFixture_{false};
  Observed<PowerBaseline> baseline_;

  int openChanges_ = 0;
  StartTimes calmedStarts_;  // of the pids in `calmed`
  WindowSums tenMinutes_;
  WindowCounts alertWindow_;
  Frame spent_;  // a frame whose storage the next one takes
  std::list<FrameWait> frameWaits_;
  bool mustReadPowerLogAgain_ = false;  // asked for while it was being read
  std::shared_ptr<SaveTurn> saveTurn_;  // of the newest save; null before the first

  Scheduled sampling_;
  Scheduled pause_;
  Scheduled saving_;
  Scheduled powerLogRead_;
};

}  // namespace embrix
