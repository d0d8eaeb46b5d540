// What the user left running: development tools an hour old or older, each group of processes under
// one title. Rules over plain facts: nothing here reads the system, and every result can be made
// from canned records. Any thread.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "frame/forgotten_item.h"
#include "frame/process_facts.h"
#include "running/system_folders.h"

namespace embrix {

struct ForgottenFinder {
  // What one process is.
  struct Description {
    std::string title;   // "vite dev", "Gradle daemon"
    std::string symbol;  // name of the row's symbol

    bool operator==(const Description&) const = default;
  };

  static constexpr double kLeastUptime = 3600;  // seconds; younger things are not forgotten

  // Rows by descending uptime; those of equal uptime by ascending pid of their root. The order of
  // `facts` plays no part, except that of two that qualify under one pid the first counts. `home`
  // has no slash at its end.
  static std::vector<ForgottenItem> find(const std::vector<ProcessFacts>& facts,
                                         std::uint32_t currentUser, std::string_view home,
                                         const SystemFolders& systemFolders = {});

  // Absent for a process that is no tool known here.
  static std::optional<Description> describe(const ProcessFacts& process);
  // The same for who has lower-cased its name already.
  static std::optional<Description> describe(const ProcessFacts& process,
                                             std::string_view lowerName);

  // What a JavaScript runtime runs, in a few words. `arguments` are those behind the program's own
  // name; `runtime` is its lower-cased name, the title when nothing else is told.
  static std::string scriptTitle(std::span<const std::string> arguments, std::string_view runtime);

  // The name of the project that a working directory belongs to. Absent for the home folder itself,
  // for folders of the system and for hidden ones.
  static std::optional<std::string> project(std::optional<std::string_view> directory,
                                            std::string_view home);
};

}  // namespace embrix
