#include "entry/model_run.h"

#include <filesystem>
#include <memory>
#include <system_error>
#include <utility>

#include <fmt/format.h>

#include "base/observed.h"
#include "base/text.h"
#include "entry/app_settings.h"
#include "entry/fixture.h"
#include "entry/options.h"
#include "entry/records_lock.h"
#include "entry/shortcuts.h"
#include "entry/watch_line.h"
#include "entry/watched_notifier.h"
#include "model/control_state.h"
#include "model/power_model.h"
#include "model/setting_keys.h"
#include "records/history_store.h"
#include "records/rename.h"

namespace embrix {

namespace {

// Where the records go. A relative path is taken from where the program was started.
HistoryStore recordsOf(const std::vector<std::string>& arguments, const UserFacts& user) {
  const auto folder = optionValue(arguments, option::kRecords);
  if (!folder || folder->empty()) return HistoryStore::standard(user);
  std::error_code error;
  const auto whole = std::filesystem::absolute(*folder, error);
  return {error ? *folder : whole.string()};
}

void registerDefaults(Settings& settings, bool hasMenuBar) {
  AppSettings::registerInto(settings);
  if (hasMenuBar) return;
  // There is no menu bar here, so nobody looks at watts in it. A user who set it all the same has
  // the shorter pauses that go with it.
  settings.registerDefault(SettingKeys::kShowWattsInMenuBar, false);
}

}  // namespace

std::optional<std::string> ModelRun::run(Host& host) const {
  Launch launch(arguments, settings);
  const bool isOrdinary = !launch.isUITesting() && !isReplay;
  if (isOrdinary) {
    Rename::moveHistory(host.user.applicationSupportDirectory);
    Rename::copySettings(settings, identifier);
  }
  registerDefaults(launch.defaults(), windows != nullptr);

  const HistoryStore store = recordsOf(arguments, host.user);
  const bool showsFixture = windows && launch.usesFixture();
  // Demo data is never saved.
  const RecordsLock lock(showsFixture ? std::string() : store.directory);
  if (lock.isHeldByAnother()) {
    return fmt::format("another Embrix keeps its records in {}",
                       Text::escapeForTerminal(store.directory));
  }

  // Nothing of this machine is read for demo data.
  Host demo = absentHost();
  demo.user = host.user;

  Session surroundings = session();  // its threads end before any host goes
  auto notifier = std::make_unique<WatchedNotifier>(std::move(surroundings.notifier));
  WatchedNotifier& posted = *notifier;
  surroundings.notifier = std::move(notifier);
  // A test run's state is not what the user's controls show.
  const auto controlSuite = isOrdinary ? settings.open(std::string(ControlState::kSuite)) : nullptr;

  PowerModelPorts ports =
      PowerModelPorts::of(showsFixture ? demo : host, surroundings, launch.defaults(), log, store,
                          SamplerOptions{.throttle = hasOption(arguments, option::kThrottle)});
  ports.controlSuite = controlSuite.get();
  PowerModel model(std::move(ports));
  surroundings.actions->publish(Shortcuts::actions());

  Subscription watching;
  if (hasOption(arguments, option::kWatch)) {
    model.surfaceAppeared();  // whoever reads the lines looks at the machine
    watching = model.frame().subscribe([&](const std::optional<Frame>&) {
      if (!print(watchLine(model, posted.takePosted()))) surroundings.loop->quit();
    });
  }
  if (showsFixture) {
    Fixture::load(model, surroundings.loop->scheduler().wallTime());
  } else {
    model.start();
  }
  if (windows) return windows(model, surroundings, launch);
  surroundings.loop->run();
  return std::nullopt;
}

}  // namespace embrix
