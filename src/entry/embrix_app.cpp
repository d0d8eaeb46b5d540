#include "entry/embrix_app.h"

#include <filesystem>
#include <memory>
#include <optional>
#include <system_error>
#include <utility>
#include <variant>

#include <fmt/format.h>

#include "base/text.h"
#include "entry/app_settings.h"
#include "entry/dump.h"
#include "entry/fixture.h"
#include "entry/launch.h"
#include "entry/model_run.h"
#include "entry/options.h"
#include "entry/replay_surroundings.h"
#include "hosts/replay/recording_host.h"
#include "hosts/replay/recording_writer.h"
#include "hosts/replay/replay_host.h"
#include "model/control_state.h"
#include "model/power_model.h"

namespace embrix {

namespace {

constexpr int kDone = 0;
constexpr int kRefused = 2;

using Arguments = std::vector<std::string>;
using Problem = std::optional<std::string>;  // one sentence without a full stop

int statusOf(const Surroundings& surroundings, const Problem& problem) {
  if (!problem) return kDone;
  surroundings.complain(fmt::format("embrix: {}.\n", *problem));
  return kRefused;
}

bool isReport(const Arguments& arguments) {
  return hasOption(arguments, option::kDump) || hasOption(arguments, option::kJSON);
}

bool isWindowless(const Arguments& arguments) {
  return hasOption(arguments, option::kBackground) || hasOption(arguments, option::kWatch);
}

// Nobody to act on, in the time of this machine.
Session nobody(const Surroundings& surroundings) {
  return absentSession(std::move(surroundings.session().loop));
}

// The replayed file is read as the run goes on.
bool isSameFile(const std::string& written, const std::optional<std::string>& replayed) {
  std::error_code error;
  return replayed && std::filesystem::equivalent(written, *replayed, error);
}

// Lets `run` work on the host, and on a recording of it where one is asked for.
Problem runRecorded(const Arguments& arguments, Host host,
                    const std::function<Problem(Host&)>& run) {
  const auto path = optionValue(arguments, option::kRecord);
  if (!path) return run(host);
  if (isSameFile(*path, optionValue(arguments, option::kReplay))) {
    return "a recording cannot be written into the one that is replayed";
  }
  auto opened = RecordingWriter::open(*path);
  if (const auto* problem = std::get_if<RecordingProblem>(&opened)) return problem->text;
  const auto writer = std::get<std::shared_ptr<RecordingWriter>>(std::move(opened));
  Problem problem;
  {
    // The recording is complete when its host is gone.
    Host recorded = recordingHost(std::move(host), writer);
    problem = run(recorded);
  }
  if (!problem && !writer->problem().empty()) problem = writer->problem();
  return problem;
}

Problem runReport(const Arguments& arguments, const Surroundings& surroundings, Host host) {
  // A recording holds no settings, and tells the same when it is replayed.
  const bool tellsControls =
      !optionValue(arguments, option::kRecord) && !optionValue(arguments, option::kReplay);
  std::function<std::unique_ptr<SettingsStore>()> controlSuite;
  if (tellsControls) {
    controlSuite = [&] { return surroundings.settings.open(std::string(ControlState::kSuite)); };
  }
  return runRecorded(arguments, std::move(host), [&](Host& used) -> Problem {
    surroundings.print(dump(used, arguments, controlSuite));
    return std::nullopt;
  });
}

// The windows of a run, where it has any.
std::variant<ModelRun::Windows, std::string> windowsOf(const Arguments& arguments,
                                                       const Surroundings& surroundings) {
  if (isWindowless(arguments)) return ModelRun::Windows();
  const auto loaded = surroundings.windows();
  if (const auto* problem = std::get_if<std::string>(&loaded)) return *problem;
  const WindowModule& windows = *std::get<const WindowModule*>(loaded);
  return [&](PowerModel& model, Session& session, const Launch& launch) -> Problem {
    const WindowRun run{.model = model,
                        .loop = *session.loop,
                        .desktop = *session.desktop,
                        .icons = *session.icons,
                        .arguments = launch.arguments(),
                        .isTestRun = launch.isUITesting(),
                        .say = surroundings.complain};
    if (windows.run(run)) return std::nullopt;
    return "there is no screen to show a window on; --background runs without one";
  };
}

Problem runOnThisMachine(const Arguments& arguments, const Surroundings& surroundings,
                         ModelRun::Windows windows) {
  const auto log = surroundings.log();
  const ModelRun run{.arguments = arguments,
                     .settings = surroundings.settings,
                     .identifier = surroundings.identifier,
                     .session = surroundings.session,
                     .log = *log,
                     .print = surroundings.print,
                     .windows = std::move(windows)};
  return runRecorded(arguments, surroundings.host(), [&](Host& host) { return run.run(host); });
}

Problem runOnRecording(const Arguments& arguments, const Surroundings& surroundings, Replay replay,
                       ModelRun::Windows windows) {
  ThrowawaySettings settings;
  SilentLog log;
  const bool isSeen = windows != nullptr;
  const ModelRun run{
      .arguments = arguments,
      .settings = settings,
      .identifier = std::nullopt,
      // Windows are looked at in time of this machine, not of the recording's.
      .session = [&] { return isSeen ? nobody(surroundings) : replayedSession(replay); },
      .log = log,
      .print = surroundings.print,
      .isReplay = true,
      .windows = std::move(windows)};
  return runRecorded(arguments, std::move(replay.host), [&](Host& host) { return run.run(host); });
}

// Pictures of demo data: no machine is read, no settings and no records of the user are touched.
Problem takePictures(const std::string& folder, const Surroundings& surroundings) {
  const auto loaded = surroundings.windows();
  if (const auto* problem = std::get_if<std::string>(&loaded)) return *problem;
  Host host = absentHost();
  Session session = nobody(surroundings);
  Settings settings(nullptr);
  AppSettings::registerInto(settings);
  SilentLog log;
  PowerModel model(PowerModelPorts::of(host, session, settings, log, HistoryStore({})));
  Scheduler& scheduler = session.loop->scheduler();
  Fixture::load(model, scheduler.wallTime());
  if (std::get<const WindowModule*>(loaded)->snapshot(model, scheduler, folder)) {
    return std::nullopt;
  }
  return fmt::format("the pictures cannot be written into {}", Text::escapeForTerminal(folder));
}

// Nothing is said of an icon that cannot be written.
Problem renderIcon(const std::string& path, const Surroundings& surroundings) {
  const auto loaded = surroundings.windows();
  if (const auto* problem = std::get_if<std::string>(&loaded)) return *problem;
  std::get<const WindowModule*>(loaded)->renderIcon(path);
  return std::nullopt;
}

Problem runAsAsked(const Arguments& arguments, const Surroundings& surroundings) {
  std::optional<Replay> replay;
  if (const auto path = optionValue(arguments, option::kReplay)) {
    auto opened = openReplay(*path);
    if (const auto* problem = std::get_if<RecordingProblem>(&opened)) return problem->text;
    replay = std::get<Replay>(std::move(opened));
  }
  if (isReport(arguments)) {
    return runReport(arguments, surroundings,
                     replay ? std::move(replay->host) : surroundings.host());
  }
  if (const auto path = optionValue(arguments, option::kIcon)) {
    return renderIcon(*path, surroundings);
  }
  if (const auto folder = optionValue(arguments, option::kSnapshot)) {
    return takePictures(*folder, surroundings);
  }
  auto windows = windowsOf(arguments, surroundings);
  if (const auto* problem = std::get_if<std::string>(&windows)) return *problem;
  auto shown = std::get<ModelRun::Windows>(std::move(windows));
  return replay ? runOnRecording(arguments, surroundings, std::move(*replay), std::move(shown))
                : runOnThisMachine(arguments, surroundings, std::move(shown));
}

}  // namespace

int EmbrixApp::run(const std::vector<std::string>& arguments, const Surroundings& surroundings) {
  if (hasOption(arguments, option::kHelp)) {
    surroundings.print(helpText());
    return kDone;
  }
  if (hasOption(arguments, option::kVersion)) {
    surroundings.print("embrix " EMBRIX_VERSION "\n");
    return kDone;
  }
  try {
    return statusOf(surroundings, runAsAsked(arguments, surroundings));
  } catch (const std::system_error& failure) {
    // No descriptors, threads or memory to be had. Everything that was begun has been ended.
    return statusOf(surroundings, failure.what());
  }
}

}  // namespace embrix
