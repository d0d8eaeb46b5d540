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
#include "hosts/replay/recording_host.h"
#include "hosts/replay/recording_writer.h"
#include "hosts/replay/replay_host.h"

namespace embrix {

namespace {

constexpr int kDone = 0;
constexpr int kRecordingFailed = 2;

constexpr std::string_view kNoWindowYet =
    "Embrix has no window yet; run it with --dump or --json for a report, or with --help.\n";

int fail(const Surroundings& surroundings, std::string_view problem) {
  surroundings.complain(fmt::format("embrix: {}.\n", problem));
  return kRecordingFailed;
}

// The replayed file is read as the run goes on.
bool isSameFile(const std::string& written, const std::optional<std::string>& replayed) {
  std::error_code error;
  return replayed && std::filesystem::equivalent(written, *replayed, error);
}

// The replayed machine, or this one.
std::variant<Host, RecordingProblem> chooseHost(const std::vector<std::string>& arguments,
                                                const Surroundings& surroundings) {
  const auto path = optionValue(arguments, option::kReplay);
  if (!path) return surroundings.host();
  auto opened = openReplay(*path);
  if (auto* problem = std::get_if<RecordingProblem>(&opened)) return std::move(*problem);
  return std::get<Replay>(std::move(opened)).host;
}

int runReport(const std::vector<std::string>& arguments, const Surroundings& surroundings,
              Host host) {
  const auto path = optionValue(arguments, option::kRecord);
  if (!path) {
    surroundings.print(dump(host, arguments));
    return kDone;
  }

  if (isSameFile(*path, optionValue(arguments, option::kReplay))) {
    return fail(surroundings, "a recording cannot be written into the one that is replayed");
  }
  auto opened = RecordingWriter::open(*path);
  if (const auto* problem = std::get_if<RecordingProblem>(&opened)) {
    return fail(surroundings, problem->text);
  }
  const auto writer = std::get<std::shared_ptr<RecordingWriter>>(std::move(opened));
  {
    // The recording is complete when its host is gone.
    Host recorded = recordingHost(std::move(host), writer);
    surroundings.print(dump(recorded, arguments));
  }
  return writer->problem().empty() ? kDone : fail(surroundings, writer->problem());
}

int runMenuBar(std::vector<std::string> arguments, const Surroundings& surroundings) {
  Launch launch(std::move(arguments), surroundings.settings);
  AppSettings::registerInto(launch.defaults());
  surroundings.print(kNoWindowYet);
  return kDone;
}

}  // namespace

int EmbrixApp::run(std::vector<std::string> arguments, const Surroundings& surroundings) {
  if (hasOption(arguments, option::kHelp)) {
    surroundings.print(helpText());
    return kDone;
  }
  if (hasOption(arguments, option::kVersion)) {
    surroundings.print("embrix " EMBRIX_VERSION "\n");
    return kDone;
  }
  auto chosen = chooseHost(arguments, surroundings);
  if (const auto* problem = std::get_if<RecordingProblem>(&chosen)) {
    return fail(surroundings, problem->text);
  }
  if (hasOption(arguments, option::kDump) || hasOption(arguments, option::kJSON)) {
    return runReport(arguments, surroundings, std::get<Host>(std::move(chosen)));
  }
  return runMenuBar(std::move(arguments), surroundings);
}

}  // namespace embrix
