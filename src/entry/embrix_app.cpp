#include "entry/embrix_app.h"

#include <filesystem>
#include <memory>
#include <optional>
#include <system_error>
#include <utility>
#include <variant>

#include <fmt/format.h>

#include "entry/app_settings.h"
#include "entry/dump.h"
#include "entry/launch.h"
#include "entry/options.h"
#include "entry/replay_surroundings.h"
#include "entry/windowless_run.h"
#include "hosts/replay/recording_host.h"
#include "hosts/replay/recording_writer.h"
#include "hosts/replay/replay_host.h"
#include "model/control_state.h"

namespace embrix {

namespace {

constexpr int kDone = 0;
constexpr int kRefused = 2;

constexpr std::string_view kNoWindowYet =
    "Embrix has no window yet; run it with --dump or --json for a report, with --background or "
    "--watch to keep its records, or with --help.\n";

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

Problem runOnThisMachine(const Arguments& arguments, const Surroundings& surroundings) {
  const auto log = surroundings.log();
  const WindowlessRun run{.arguments = arguments,
                          .settings = surroundings.settings,
                          .identifier = surroundings.identifier,
                          .session = surroundings.session,
                          .log = *log,
                          .print = surroundings.print};
  return runRecorded(arguments, surroundings.host(), [&](Host& host) { return run.run(host); });
}

Problem runOnRecording(const Arguments& arguments, const Surroundings& surroundings,
                       Replay replay) {
  ThrowawaySettings settings;
  SilentLog log;
  const WindowlessRun run{.arguments = arguments,
                          .settings = settings,
                          .identifier = std::nullopt,
                          .session = [&] { return replayedSession(replay); },
                          .log = log,
                          .print = surroundings.print,
                          .isReplay = true};
  return runRecorded(arguments, std::move(replay.host), [&](Host& host) { return run.run(host); });
}

Problem runMenuBar(const Arguments& arguments, const Surroundings& surroundings) {
  Launch launch(arguments, surroundings.settings);
  AppSettings::registerInto(launch.defaults());
  surroundings.print(kNoWindowYet);
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
  if (!isWindowless(arguments)) return runMenuBar(arguments, surroundings);
  return replay ? runOnRecording(arguments, surroundings, std::move(*replay))
                : runOnThisMachine(arguments, surroundings);
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
  return statusOf(surroundings, runAsAsked(arguments, surroundings));
}

}  // namespace embrix
